// Stands in for drivers/synth_driver_table.cpp in this program.
#include "driver_rows.h"

namespace tonewright {
namespace {

void Record(const char *row, const char *operation, const std::string &arguments) {
    Calls.push_back(std::string(row) + " " + operation + " " + arguments);
}

std::string Text(MidiPorts ports) {
    return std::to_string(ports.in) + " " + std::to_string(ports.out);
}

constexpr char FirstName[] = "first";
constexpr char SecondName[] = "second";

// A row whose operations record that they belong to the row of that name.
template <const char *row> SynthDriver RecordingRow() {
    SynthDriver driver = {};
    driver.FindSynth = [](QWidget *, FoundSynth &found, const PortNames &names, bool autodetect) {
        Record(row, "FindSynth",
               std::to_string(found.driver == NoDriverId) + " " + Text(found.ports) + " " +
                   std::to_string(found.firmware) + " " + names.in + " " + names.out + " " +
                   std::to_string(autodetect));
        if (Answer != 0) {
            found.driver = row == FirstName ? FirstDriverId : SecondDriverId;
            found.ports = {4, 5};
            found.firmware = 0x01000200;
        }
        return Answer;
    };
    driver.OpenBank = [](QWidget *, VoiceList &list, const char *path, std::int64_t *time) {
        Record(row, "OpenBank", path);
        if (Answer != 0) {
            ListReset(list);
            ListAdd(list);
            *time = 1234;
        }
        return Answer;
    };
    driver.SaveBank = [](QWidget *, VoiceList &list, const char *path) {
        Record(row, "SaveBank", std::to_string(ListCount(list)) + " " + path);
        return Answer;
    };
    driver.DrawVoiceItem = [](const DrawItem &item, const ItemFonts &fonts,
                              const VoiceObject &voice, int rowIndex) {
        Record(row, "DrawVoiceItem",
               std::to_string(item.itemIndex) + " " + std::to_string(fonts.itemHeight) + " " +
                   std::to_string(voice.bytes.size()) + " " + std::to_string(rowIndex));
        return 1;
    };
    driver.MakeItemFonts = [](ItemFonts &fonts) {
        Record(row, "MakeItemFonts", fonts == ItemFonts{} ? "empty" : "filled");
        fonts.itemHeight = 60;
        return 1;
    };
    driver.UploadBank = [](QWidget *, VoiceList &, MidiPorts ports) {
        Record(row, "UploadBank", Text(ports));
        return Answer;
    };
    driver.DownloadBank = [](QWidget *, VoiceList &, MidiPorts ports) {
        Record(row, "DownloadBank", Text(ports));
        return Answer;
    };
    driver.UploadVoice = [](QWidget *, VoiceList &, const VoiceObject *voice, MidiPorts ports,
                            int index, std::uint8_t flags) {
        Record(row, "UploadVoice",
               std::string(voice ? "voice " : "item ") + Text(ports) + " " + std::to_string(index) +
                   " " + std::to_string(flags));
        return Answer;
    };
    driver.ImportVoice = [](QWidget *, VoiceList &, int index, const char *path, VoiceObject *out) {
        Record(row, "ImportVoice", std::to_string(index) + " " + path + (out ? " out" : " item"));
        return Answer;
    };
    driver.ExportVoice = [](QWidget *, VoiceList &, const VoiceObject *voice, const char *path,
                            int index, std::uint32_t firmware) {
        Record(row, "ExportVoice",
               std::string(voice ? "voice " : "item ") + path + " " + std::to_string(index) + " " +
                   std::to_string(firmware));
        return Answer;
    };
    driver.EditVoice = [](QWidget *, VoiceObject &voice, MidiPorts ports, int index) {
        Record(row, "EditVoice", Text(ports) + " " + std::to_string(index));
        voice.bytes.back() = 99;
        return Answer;
    };
    // The name is the payload itself.
    driver.VoiceName = [](std::string &name, const VoiceObject &voice) {
        const auto payload = PayloadOf(voice)->payload;
        name = std::string(row) + ":" + std::string(payload.begin(), payload.end());
        return static_cast<int>(name.size());
    };
    driver.ConfigureSynth = [](QWidget *, MidiPorts ports) {
        Record(row, "ConfigureSynth", Text(ports));
        return Answer;
    };
    driver.AutoConfigure = [](QWidget *, int midiOut) {
        Record(row, "AutoConfigure", std::to_string(midiOut));
        return Answer;
    };
    return driver;
}

SynthDriver MakeFirst() {
    SynthDriver driver = RecordingRow<FirstName>();
    driver.id = FirstDriverId;
    driver.name = "First Instrument, and more";
    driver.bankExtension = "syx";
    driver.voiceExtension = "sy1";
    driver.extraExtension = "TwcDx7";
    driver.defaultDocumentName = "Untitled.syx";
    driver.flags = 0x02;
    return driver;
}

SynthDriver MakeSecond() {
    SynthDriver driver = RecordingRow<SecondName>();
    driver.id = SecondDriverId;
    driver.name = "Second Instrument";
    driver.bankExtension = "srx";
    driver.voiceExtension = "sr1";
    driver.extraExtension = "crg";
    driver.defaultDocumentName = "Untitled.srx";
    driver.flags = 0x3D;
    return driver;
}

} // namespace

std::vector<std::string> Calls;
int Answer = 1;
SynthDriver FirstRow = MakeFirst();
SynthDriver SecondRow = MakeSecond();

constexpr const SynthDriver *Rows[] = {&FirstRow, &SecondRow};
const std::span<const SynthDriver *const> SynthDrivers = Rows;

void RestoreDriverRows() {
    Calls.clear();
    Answer = 1;
    FirstRow = MakeFirst();
    SecondRow = MakeSecond();
}

} // namespace tonewright
