// Reads the dumps of a file for the window, tells of them in words, and hands voices on.
#include "extras/dump_contents.h"

#include "common/desktop.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "core/synth_driver.h"
#include "drivers/reface_dx/voice_codec.h"
#include "extras/list_access.h"
#include "extras/rescue.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tonewright {
namespace {

constexpr std::size_t BankRows = UsualBankRows;

std::uint64_t SizeOf(const std::string &path) {
    std::error_code error;
    const auto size = std::filesystem::file_size(PathOfUtf8(path), error);
    return error ? 0 : size;
}

std::string Number(std::uint64_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3;) {
        at -= 3;
        digits.insert(at, ",");
    }
    return digits;
}

// "one voice", "1,200 voices"
std::string Count(std::uint64_t count, const char *one, const char *many) {
    return count == 1 ? std::string("one ") + one : Number(count) + " " + many;
}

std::vector<KeptVoice> VoicesOf(const DumpContents &contents,
                                std::span<const std::size_t> numbers) {
    std::vector<KeptVoice> voices;
    for (const std::size_t number : numbers) {
        voices.push_back(contents.voices[number]);
    }
    return voices;
}

// False, after saying why or by the user's word, when these voices do not go into the list.
bool MayBeTaken(QWidget *owner, std::span<const KeptVoice> voices) {
    if (voices.empty()) {
        return false;
    }
    const DriverId family = FamilyOfForm(voices.front().form);
    if (std::ranges::any_of(voices, [family](const KeptVoice &voice) {
            return FamilyOfForm(voice.form) != family;
        })) {
        ShowMessage(owner, "These voices are for different instruments, and a bank holds voices of "
                           "one. Please select those of one instrument.");
        return false;
    }
    return MayTakeHighBytes(owner, voices);
}

} // namespace

DumpContents ReadDumpContents(const std::string &path, const DumpsProgress &progress) {
    DumpContents contents{.path = path};
    const std::uint64_t size = SizeOf(path);
    std::uint64_t read = 0;
    std::size_t firstVoice = 0;
    DumpVisitor visitor;
    visitor.voice = [&](const FoundVoice &found) {
        if (contents.voices.size() < MostDumpVoicesShown) {
            contents.voices.push_back(KeepVoice(found.voice));
        }
        ++contents.voicesFound;
        return true;
    };
    visitor.dump = [&](const FoundDump &dump) {
        if (contents.dumps.size() < MostDumpsShown) {
            contents.dumps.push_back(dump);
            contents.firstVoices.push_back(firstVoice);
        }
        ++contents.dumpsFound;
        if (dump.voices != 0) {
            ++contents.dumpsWithVoices;
            contents.faultyDumps += !IsSoundDump(dump);
        }
        firstVoice = contents.voices.size();
        return true;
    };
    visitor.bytes = [&](std::span<const std::uint8_t> piece) { read += piece.size(); };
    visitor.goesOn = [&] { return !progress || progress(read, size); };
    errno = 0;
    switch (ReadDumps(path.c_str(), visitor)) {
    case DumpRead::Done:
        break;
    case DumpRead::Ended:
        contents.reading = DumpsReading::Cancelled;
        break;
    case DumpRead::Failed:
        contents.reading = DumpsReading::Failed;
        contents.failure = errno ? std::strerror(errno) : "it is no regular file";
        break;
    }
    return contents;
}

std::size_t ShownVoicesOf(const DumpContents &contents, std::size_t dump) {
    const std::size_t end = dump + 1 < contents.firstVoices.size() ? contents.firstVoices[dump + 1]
                                                                   : contents.voices.size();
    return std::min<std::uint64_t>(end - contents.firstVoices[dump], contents.dumps[dump].voices);
}

std::string DumpsInWords(const DumpContents &contents) {
    if (contents.reading == DumpsReading::Failed && contents.dumpsFound == 0) {
        return "This file could not be read: " + contents.failure + ".";
    }
    std::string text;
    if (contents.dumpsFound == 0) {
        text = "There is nothing in this file.";
    } else if (contents.voicesFound == 0) {
        text = "There is no voice in this file that a list can hold.";
    } else {
        const std::uint64_t dumps = contents.dumpsWithVoices, faulty = contents.faultyDumps;
        text = "There " + std::string(contents.voicesFound == 1 ? "is " : "are ") +
               Count(contents.voicesFound, "voice", "voices") + " in this file, in " +
               Count(dumps, "dump", "dumps");
        if (faulty != 0) {
            text +=
                (dumps == 1 ? ", which" : ", of which " + (faulty == 1 ? "one" : Number(faulty))) +
                std::string(faulty == 1 ? " is not as it should be" : " are not as they should be");
        }
        text += ".";
    }
    if (contents.reading == DumpsReading::Failed) {
        text += " It could not be read to its end: " + contents.failure + ".";
    } else if (contents.reading == DumpsReading::Cancelled) {
        text += " The reading was cancelled, and there may be more.";
    } else if (contents.dumpsFound > contents.dumps.size() ||
               contents.voicesFound > contents.voices.size()) {
        text += " Not all of it is shown.";
    }
    return text;
}

std::string DumpInWords(const FoundDump &dump) {
    std::string text =
        TextOfDump(dump) + ", " + Count(dump.length, "byte", "bytes") + " from " +
        Number(dump.offset) +
        FormatText(" (hexadecimal %llX)", static_cast<unsigned long long>(dump.offset));
    if (const std::string faults = RemarksOfDump(dump); !faults.empty()) {
        text += ": " + faults;
    }
    return text + ".";
}

std::string InstrumentOfVoice(const KeptVoice &voice) {
    return FamilyOfForm(voice.form) == RefaceDriverId ? "reface DX" : "DX7";
}

bool TakeAsNewBank(QWidget *owner, const DumpContents &contents,
                   std::span<const std::size_t> numbers) {
    if (!TheListAccess.NewBank) {
        return false;
    }
    if (numbers.size() > BankRows) {
        if (AskYesNo(owner, "A bank holds " + std::to_string(BankRows) + " voices, and you have " +
                                Number(numbers.size()) +
                                " selected.\n\nDo you wish to take the first " +
                                std::to_string(BankRows) + " of them?") != ResultYes) {
            return false;
        }
        numbers = numbers.first(BankRows);
    }
    const std::vector<KeptVoice> voices = VoicesOf(contents, numbers);
    return MayBeTaken(owner, voices) && TheListAccess.NewBank(owner, voices, contents.path);
}

int TakeIntoList(QWidget *owner, const DumpContents &contents, std::span<const std::size_t> numbers,
                 int row) {
    const std::vector<KeptVoice> voices = VoicesOf(contents, numbers);
    if (!TheListAccess.PutVoices || !MayBeTaken(owner, voices)) {
        return 0;
    }
    return std::max(0, TheListAccess.PutVoices(owner, row, voices, contents.path));
}

std::string PutInWords(int row, int put, std::size_t wanted) {
    std::string text = put == 1 ? FormatText("Put at row %d", row)
                                : FormatText("Put at rows %d to %d", row, row + put - 1);
    if (const std::size_t left = wanted - static_cast<std::size_t>(put); left != 0) {
        text += ", no room for " + Number(left);
    }
    return text;
}

} // namespace tonewright
