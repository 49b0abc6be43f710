// Catalogue files and voices of both families, written out here without any code of the program,
// and a home for the catalogue that the settings name.
#pragma once

#include "common/folders.h"
#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/voice_object.h"
#include "database/database_file.h"
#include "support/bank_bytes.h"
#include "support/reface_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tonewright {

using TestBytes = std::vector<std::uint8_t>;

// What a family's catalogues are like, by hand.
struct TestFamily {
    const char *label;
    const char *idText;
    const char *extension;
    const char *backupExtension;
    std::size_t recordSize;
    std::size_t sizeA, sizeB;
    std::size_t nameOffset; // in the payload
    std::string name;       // of voice 0 of TestVoiceOf
};

inline const TestFamily TestFamilies[] = {
    {"Dx7", "y7XD", "syx_db", ".syx_db_backup", 446, 156, 0, 145, "VOICE 01"},
    {"Reface", "xdFR", "srx_db", ".srx_db_backup", 440, 38, 112, 0, "REFACE 01"},
};

inline void AppendTest32(TestBytes &bytes, std::uint32_t number) {
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    }
}

inline std::uint32_t Test32(const TestBytes &bytes, std::size_t offset) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) {
        number = number << 8 | bytes.at(offset + i);
    }
    return number;
}

inline std::string TestTextAt(const TestBytes &bytes, std::size_t offset, std::size_t size) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(offset),
            bytes.begin() + static_cast<std::ptrdiff_t>(offset + size)};
}

// Payload and further data of voice `number` (0 to 31), whose name ends in its number from 1.
inline TestBytes TestPayloadOf(const TestFamily &family, int number) {
    if (family.sizeB == 0) {
        TestBytes payload = TestUnpackedVoice();
        std::string name = TestVoiceName(number);
        name.resize(10, ' ');
        std::copy(name.begin(), name.end(), payload.begin() + 145);
        return payload;
    }
    const TestBytes block = TestRefaceBlock(number);
    return {block.begin() + 52, block.end()};
}

inline VoiceObject TestVoiceWith(const TestFamily &family, const TestBytes &payload) {
    TestBytes block = {0x6F, 0x57, 0x4E, 0x54};
    AppendTest32(block, 52);
    AppendTest32(block, static_cast<std::uint32_t>(family.sizeA));
    AppendTest32(block, static_cast<std::uint32_t>(family.sizeB));
    block.insert(block.end(), family.idText, family.idText + 4);
    block.resize(52);
    block.insert(block.end(), payload.begin(), payload.end());
    return {block};
}

inline VoiceObject TestVoiceOf(const TestFamily &family, int number) {
    return TestVoiceWith(family, TestPayloadOf(family, number));
}

inline TestBytes TestCatalogueHeader(const TestFamily &family, std::uint32_t count,
                                     std::uint32_t created = 1000) {
    const std::string magic = "TnwrTWdb";
    TestBytes header(magic.begin(), magic.end());
    header.insert(header.end(), family.idText, family.idText + 4);
    AppendTest32(header, created);
    AppendTest32(header, created + 1);
    AppendTest32(header, count);
    for (int i = 0; i < 128; ++i) {
        header.push_back(static_cast<std::uint8_t>(i)); // carried along
    }
    return header;
}

struct TestEntry {
    std::string name, source;
    std::uint32_t position = 0;
    std::uint32_t date = 0;
};

// A record with voice `number`.
inline TestBytes TestRecord(const TestFamily &family, int number, const TestEntry &entry) {
    TestBytes record = {'R', 'w', 'n', 'T'};
    record.insert(record.end(), family.idText, family.idText + 4);
    AppendTest32(record, entry.date);
    AppendTest32(record, entry.date);
    AppendTest32(record, 290);
    AppendTest32(record, static_cast<std::uint32_t>(family.sizeA));
    AppendTest32(record, static_cast<std::uint32_t>(family.sizeB));
    record.insert(record.end(), entry.name.begin(), entry.name.end());
    record.resize(93);
    record.insert(record.end(), entry.source.begin(), entry.source.end());
    record.resize(158);
    AppendTest32(record, entry.position);
    record.resize(290);
    const TestBytes payload = TestPayloadOf(family, number);
    record.insert(record.end(), payload.begin(), payload.end());
    return record;
}

// "Name 7" from "Bank 7.syx" for record 7, counted from 0, with voice 7 modulo 32.
inline TestBytes TestRecordAt(const TestFamily &family, int index) {
    const std::string number = std::to_string(index);
    return TestRecord(family, index % 32,
                      {"Name " + number, "Bank " + number + ".syx",
                       static_cast<std::uint32_t>(index),
                       static_cast<std::uint32_t>(index + 5000)});
}

// A catalogue of `records` such records, whose header counts `count`.
inline TestBytes TestCatalogue(const TestFamily &family, int records, std::uint32_t count) {
    TestBytes file = TestCatalogueHeader(family, count);
    for (int index = 0; index < records; ++index) {
        const TestBytes record = TestRecordAt(family, index);
        file.insert(file.end(), record.begin(), record.end());
    }
    return file;
}

// With the documents in a temporary folder, and the rows of the family.
class CatalogueTest : public testing::TestWithParam<TestFamily> {
protected:
    CatalogueTest() {
        PlatformFolders.documents = folder.Folder();
        std::filesystem::create_directory(folder.path / "My Tonewright 17 Documents");
    }

    TempFolder folder;
    const TestFamily &family = GetParam();
    const SynthDriver &row = *SynthDrivers[family.sizeB == 0 ? 0 : 1];

    std::string Path() const {
        return folder.File(std::string("My Tonewright 17 Documents/Voices.") + family.extension);
    }
    TestBytes File() const { return ReadTestFile(Path()); }
    std::size_t Size() const { return std::filesystem::file_size(Path()); }
    bool HasFile() const { return std::filesystem::exists(Path()); }

    int Add(int number, const char *name = nullptr, const char *source = "a.syx",
            int position = 0) const {
        return row.DatabaseAddVoice(nullptr, TestVoiceOf(family, number), name, source, position);
    }
};

inline std::string LabelOf(const testing::TestParamInfo<TestFamily> &info) {
    return info.param.label;
}

} // namespace tonewright
