// Where the voices of the list came from, and what the document's file was like when it was last
// read or written here: what a save must know to tell whose voices it would replace.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tonewright {

// A number that the list keeps while its voices are edited, and that each level of undo keeps with
// it. Voices that come from elsewhere in the place of all of them have a new one.
constexpr int NoListOrigin = 0; // which no list that was filled has
extern int MainListOrigin;
void BeginListOrigin();
// MainListOrigin of the last download, of which voices may not have arrived.
constexpr int NoDownload = -1; // which no list has
extern int OriginOfDownload;

// The document's file as it was known last.
struct DocumentFile {
    std::string path;                // empty: none
    int origin = NoListOrigin;       // MainListOrigin of the list that was read from it, or written
    std::vector<std::uint8_t> start; // as many bytes as an Open reads, at least a bank's
    bool holdsMore = false;          // more than these
    bool exceedsBank = false;        // more than a bank as it is written
};
extern DocumentFile TheDocumentFile;

// The file at `path` as it is now, as one of the present list; of no file, no bytes. What a bank is
// follows from the extension, or from the current family.
DocumentFile LookAtDocumentFile(const std::string &path);

// What a save under that name leaves known when it fails: of another file that is there, that the
// list did not come from it; of none, that the save can be tried again; of the document's own file,
// what is known of it.
DocumentFile DocumentFileBeforeSave(const std::string &path);

} // namespace tonewright
