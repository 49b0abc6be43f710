// The commands about dumps in files of any kind: identify and rescue. Neither changes a file that
// it reads.
#include "cli/cli_commands.h"
#include "cli/folder_files.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "common/desktop.h"
#include "common/open_file.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "extras/dump_reader.h"
#include "extras/rescue.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <unordered_map>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

void PutTabAnd(std::string_view text) {
    Put(StandardOutput, '\t');
    Put(StandardOutput, text);
}

void PutTabAnd(std::uint64_t number) {
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, number);
}

std::string ReasonOfReading() {
    return errno ? std::strerror(errno) : "cannot be read";
}

// ---- identify

// One line for each dump of the file, and one for a file without any. False when it could not be
// read, or not all in it is sound.
bool IdentifyFile(const std::string &path) {
    bool isSound = true, isEmpty = true;
    const auto putDump = [&](const FoundDump &dump) {
        isEmpty = false;
        const std::string what = TextOfDump(dump), faults = RemarksOfDump(dump);
        Put(StandardOutput, FieldText(path));
        PutTabAnd(dump.offset);
        PutTabAnd(dump.length);
        PutTabAnd(FieldText(what));
        PutTabAnd(dump.voices);
        PutTabAnd(FieldText(faults));
        Put(StandardOutput, '\n');
        if (!IsSoundDump(dump)) {
            isSound = false;
            TellError(path, FormatText("at %llu: ", static_cast<unsigned long long>(dump.offset)) +
                                what + (faults.empty() ? "" : ": " + faults));
        }
        return true;
    };
    errno = 0;
    if (ReadDumps(path.c_str(), {.voice = {}, .dump = putDump, .bytes = {}}) == DumpRead::Failed) {
        TellError(path, ReasonOfReading());
        return false;
    }
    if (isEmpty) {
        Put(StandardOutput, FieldText(path));
        Put(StandardOutput, "\t0\t0\tempty file\t0\t\n");
    }
    return isSound;
}

// ---- rescue

struct RescueRun {
    std::string folder; // where the documents go
    bool failed = false;
    // How many documents of a name there were, so that thousands of one name are quick.
    std::unordered_map<std::string, int> numbers = {};
};

// A file that does not exist yet, of the source's name with a number behind it where that is taken:
// "bank.syx", "bank (2).syx". Null, the reason in errno, when none can be made.
FilePointer CreateDocument(RescueRun &run, const std::string &source, const char *extension,
                           std::string &path) {
    // With number and extension no longer than the 255 bytes that most file systems take.
    constexpr std::size_t longest = 230;
    const std::string stem = Utf8OfPath(PathOfUtf8(source).stem());
    const std::string start =
        Utf8OfPath(PathOfUtf8(run.folder) / PathOfUtf8(CutText(stem, longest)));
    int &number = run.numbers[start + '.' + extension];
    for (;;) {
        ++number;
        path = start + (number == 1 ? "" : FormatText(" (%d)", number)) + '.' + extension;
        FilePointer file = CreateFileLike(path.c_str(), "", NewFileUsers::AsModelOrFewer);
        if (file || errno != EEXIST) {
            number -= file ? 0 : 1;
            return file;
        }
    }
}

// All of the document, or no file. False, the reason in errno, when it is not there.
bool WriteDocument(RescueRun &run, const std::string &source, const RescuedDocument &document,
                   std::string &path) {
    FilePointer file = CreateDocument(run, source, document.extension, path);
    if (!file) {
        return false;
    }
    std::setvbuf(file.get(), nullptr, _IONBF, 0); // in one step: nobody finds a part of it
    errno = 0;
    const bool isWritten = std::fwrite(document.bytes.data(), 1, document.bytes.size(),
                                       file.get()) == document.bytes.size();
    int reason = errno;
    const bool isClosed = std::fclose(file.release()) == 0; // some learn of a full disk here
    if (isWritten && isClosed) {
        return true;
    }
    reason = reason ? reason : errno;
    std::error_code ignored;
    fs::remove(PathOfUtf8(path), ignored);
    errno = reason;
    return false;
}

bool MayHaveHighBytes(const std::string &source, const RescuedDocument &document) {
    if (document.highByteVoices == 0) {
        return true;
    }
    const std::string voices = document.highByteVoices == 1
                                   ? "one voice has"
                                   : FormatText("%d voices have", document.highByteVoices);
    return AskYesNo(nullptr, FormatText("%s, at %llu: %s bytes above 7F, which no instrument sends "
                                        "or takes.\n\nDo you wish to write them all the same?",
                                        source.c_str(),
                                        static_cast<unsigned long long>(document.dump.offset),
                                        voices.c_str())) == ResultYes;
}

// `path`: of the document; empty: there is none.
void PutLine(const std::string &source, const FoundDump &dump, int voices,
             const std::string &path) {
    Put(StandardOutput, FieldText(source));
    PutTabAnd(dump.offset);
    PutTabAnd(FieldText(TextOfDump(dump)));
    PutTabAnd(static_cast<std::uint64_t>(voices));
    PutTabAnd(FieldText(RemarksOfDump(dump)));
    PutTabAnd(FieldText(path));
    Put(StandardOutput, '\n');
}

bool RescueDocument(RescueRun &run, const std::string &source, const RescuedDocument &document) {
    std::string path, failure;
    if (!MayHaveHighBytes(source, document)) {
        failure = "not written: bytes above 7F";
    } else if (!WriteDocument(run, source, document, path)) {
        failure = WithSystemReason(path + " could not be written", errno);
    }
    PutLine(source, document.dump, document.voices, failure.empty() ? path : "");
    if (!failure.empty()) {
        TellError(source, failure);
        run.failed = true;
    }
    return true;
}

// Of dumps without a document, those that one would look for: of voices.
bool IsMissed(const FoundDump &dump) {
    return HasVoices(dump.kind) || dump.kind == DumpKind::FourOperatorBank ||
           dump.kind == DumpKind::FourOperatorVoice;
}

void RescueFile(RescueRun &run, const std::string &source) {
    bool isEmpty = true, hasLine = false;
    const auto rescue = [&](const RescuedDocument &document) {
        hasLine = true;
        return RescueDocument(run, source, document);
    };
    const auto tell = [&](const FoundDump &dump) {
        isEmpty = false;
        if (IsMissed(dump)) {
            hasLine = true;
            PutLine(source, dump, 0, "");
        }
    };
    errno = 0;
    const DumpRead read = RescueDocuments(source.c_str(), rescue, tell);
    if (read == DumpRead::Failed) {
        TellError(source, ReasonOfReading());
        run.failed = true;
    } else if (!hasLine) {
        Put(StandardOutput, FieldText(source));
        Put(StandardOutput, isEmpty ? "\t0\tempty file\t0\t\t\n" : "\t0\tno voices\t0\t\t\n");
    }
}

} // namespace

int CliIdentify(const CliCall &call) {
    int status = ExitDone;
    const FolderCalls calls = {.file =
                                   [&status](const std::string &path) {
                                       status = IdentifyFile(path) ? status : ExitFailed;
                                       return true;
                                   },
                               .failed =
                                   [&status](const std::string &path, const std::string &reason) {
                                       TellError(path, reason);
                                       status = ExitFailed;
                                   }};
    for (const char *word : call.words) {
        ForEachFile(word, calls);
    }
    return status;
}

int CliRescue(const CliCall &call) {
    const char *folder = call[CliOption::Into];
    if (!folder || !*folder) {
        return TellWrongCall("rescue", "--into FOLDER is missing");
    }
    UseTerminalDesktop(call);
    std::error_code error;
    fs::create_directories(PathOfUtf8(folder), error);
    if (error || !fs::is_directory(PathOfUtf8(folder), error)) {
        return TellFailure(folder, error ? error.message() : "not a folder");
    }
    RescueRun run{.folder = folder};
    const FolderCalls calls = {.file =
                                   [&run](const std::string &path) {
                                       RescueFile(run, path);
                                       return true;
                                   },
                               .failed =
                                   [&run](const std::string &path, const std::string &reason) {
                                       TellError(path, reason);
                                       run.failed = true;
                                   },
                               // What was rescued before is not rescued once more.
                               .isLeftOut =
                                   [&run](const std::string &path) {
                                       std::error_code ignored;
                                       return fs::equivalent(PathOfUtf8(path),
                                                             PathOfUtf8(run.folder), ignored);
                                   }};
    for (const char *word : call.words) {
        ForEachFile(word, calls);
    }
    return run.failed ? ExitFailed : ExitDone;
}

} // namespace tonewright
