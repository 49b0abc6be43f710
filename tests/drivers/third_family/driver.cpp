// A family of instruments that exists in tests only: what a folder and a line must be enough for.
//
// Bank, "chm", 52 bytes: "CHIM" | 8 voices of 6 bytes      Single voice, "ch1", 10 bytes: "CHI1" |
// 6 A voice is a name of four bytes, a tune (from 0) and one more byte. A tune above 9 is damage.
#include "common/desktop.h"
#include "common/file_bytes.h"
#include "common/file_time.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/document_file.h"
#include "core/undo_level.h"
#include "drivers/view/voice_cell.h"

#include <QPainter>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace tonewright {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr DriverId Id = MakeDriverId("chim");
constexpr std::size_t NameSize = 4, TuneOffset = 4, VoiceSize = 6, MagicSize = 4;
constexpr int Rows = 8;
constexpr int HighestTune = 9;

struct Shape {
    std::string_view magic;
    std::size_t voices;
};
constexpr Shape BankShape = {"CHIM", Rows};
constexpr Shape VoiceShape = {"CHI1", 1};

std::size_t SizeOf(const Shape &shape) {
    return MagicSize + shape.voices * VoiceSize;
}

Bytes VoiceAt(Bytes file, std::size_t index) {
    return file.subspan(MagicSize + index * VoiceSize, VoiceSize);
}

VoiceFileReport Judge(Bytes file, const Shape &shape) {
    if (file.size() < SizeOf(shape)) {
        return ShortFile(file.size(), SizeOf(shape));
    }
    if (!std::equal(shape.magic.begin(), shape.magic.end(), file.begin())) {
        return RefusedFile("no chimes");
    }
    for (std::size_t index = 0; index < shape.voices; ++index) {
        if (VoiceAt(file, index)[TuneOffset] > HighestTune) {
            return {VoiceFileState::Damaged, "a tune that nobody can play"};
        }
    }
    return {};
}

std::optional<Bytes> BytesOf(const VoiceObject *voice) {
    const auto parts = voice ? PayloadOf(*voice) : std::nullopt;
    if (!parts || HeaderOf(*voice)->driverId != Id || parts->payload.size() < VoiceSize) {
        return std::nullopt;
    }
    return parts->payload.first(VoiceSize);
}

bool IsVoice(const VoiceObject *voice) {
    return BytesOf(voice).has_value();
}

// The file at `path`; nothing when it is refused, by the user too.
std::optional<std::vector<std::uint8_t>> Read(QWidget *window, const char *path,
                                              const Shape &shape) {
    const WaitCursor wait;
    auto file = ReadFileBytes(path, SizeOf(shape));
    const auto state = file ? Judge(*file, shape).state : VoiceFileState::Refused;
    if (state == VoiceFileState::Refused ||
        (state == VoiceFileState::Damaged && AskYesNo(window, "Damaged?") != ResultYes)) {
        return std::nullopt;
    }
    return file;
}

int Write(const char *path, const Shape &shape, std::span<const VoiceObject *const> voices) {
    const WaitCursor wait;
    std::vector<std::uint8_t> file(shape.magic.begin(), shape.magic.end());
    for (const VoiceObject *voice : voices) {
        const auto bytes = BytesOf(voice);
        if (!bytes) {
            return 0;
        }
        file.insert(file.end(), bytes->begin(), bytes->end());
    }
    return WriteDocumentFile(path, file) == WriteOutcome::Done;
}

int OpenBank(QWidget *window, VoiceList &list, const char *path, std::int64_t *time) {
    if (time) {
        *time = ModificationTimeOrNow(path);
    }
    const auto file = Read(window, path, BankShape);
    if (!file) {
        return 0;
    }
    ListReset(list);
    SelectListFonts(list, Id);
    for (std::size_t row = 0; row < Rows; ++row) {
        ListSetVoice(list, ListAdd(list), MakeVoiceObject(Id, VoiceAt(*file, row)));
    }
    ListSelect(list, 0);
    return 1;
}

int SaveBank(QWidget *window, VoiceList &list, const char *path) {
    if (!MakeBackupOf(window, path)) {
        return 0;
    }
    std::array<const VoiceObject *, Rows> voices;
    for (int row = 0; row < Rows; ++row) {
        voices[static_cast<std::size_t>(row)] = ListVoice(list, row);
    }
    return Write(path, BankShape, voices);
}

int ImportVoice(QWidget *window, VoiceList &list, int index, const char *path, VoiceObject *out) {
    const auto file = Read(window, path, VoiceShape);
    if (!file || (!out && !ListVoice(list, index))) {
        return 0;
    }
    VoiceObject voice = MakeVoiceObject(Id, VoiceAt(*file, 0));
    if (out) {
        *out = std::move(voice);
    } else {
        ListSetVoice(list, index, std::move(voice));
    }
    return 1;
}

int ExportVoice(QWidget *, VoiceList &list, const VoiceObject *voice, const char *path, int index,
                std::uint32_t) {
    const VoiceObject *const voices[] = {voice ? voice : ListVoice(list, index)};
    return Write(path, VoiceShape, voices);
}

int VoiceName(std::string &name, const VoiceObject &voice) {
    const auto parts = PayloadOf(voice);
    if (!parts || parts->payload.size() < VoiceSize) {
        return 0;
    }
    name = MakeVoiceNameText(parts->payload.first(NameSize));
    return static_cast<int>(name.size());
}

int VoiceAlgorithm(const VoiceObject &voice) {
    const auto parts = PayloadOf(voice);
    return parts && parts->payload.size() >= VoiceSize ? parts->payload[TuneOffset] + 1 : 0;
}

// A red square is the picture of a tune.
int DrawVoiceItem(const DrawItem &item, const ItemFonts &fonts, const VoiceObject &voice, int) {
    std::string name;
    if (IsVoice(&voice) && VoiceName(name, voice)) {
        const ItemPicture picture =
            PaintItemTexts(item, fonts,
                           {.place = QStringLiteral("Chime %1").arg(item.itemIndex + 1),
                            .name = QString::fromStdString(name)});
        item.painter->fillRect(picture.area.left, picture.area.top, 20, 20, Qt::red);
    }
    return 1;
}

template <const Shape &shape> constexpr VoiceFileFormat MakeFormat(VoiceFileKind kind) {
    return {.driver = Id,
            .kind = kind,
            .size = MagicSize + shape.voices * VoiceSize,
            .wholeSize = [](Bytes) -> std::uint64_t { return SizeOf(shape); },
            .judge = [](Bytes file) { return Judge(file, shape); },
            .count = [](Bytes) { return shape.voices; },
            .voice =
                [](Bytes file, std::size_t index) {
                    static std::string name;
                    const Bytes voice = VoiceAt(file, index);
                    name = MakeVoiceNameText(voice.first(NameSize));
                    return VoiceLine{name, voice[TuneOffset] + 1};
                },
            .canBeWritten = IsVoice,
            .canBeSent = IsVoice,
            .voicesWritten = static_cast<int>(shape.voices)};
}
constexpr VoiceFileFormat BankFormat = MakeFormat<BankShape>(VoiceFileKind::Bank);
constexpr VoiceFileFormat VoiceFormat = MakeFormat<VoiceShape>(VoiceFileKind::SingleVoice);

} // namespace

extern constinit const SynthDriver ChimesDriver = {
    .id = Id,
    .name = "Chimes",
    .bankExtension = "chm",
    .voiceExtension = "ch1",
    .bankFilter = "chm files\0*.chm\0All files\0*.*\0",
    .voiceFilter = "ch1 files\0*.ch1\0All files\0*.*\0",
    .defaultDocumentName = "Untitled.chm",
    .bankRows = Rows,
    .nameSize = NameSize,
    .bankFormat = &BankFormat,
    .voiceFormat = &VoiceFormat,
    .OpenBank = OpenBank,
    .SaveBank = SaveBank,
    .DrawVoiceItem = VIEW_OPERATION(DrawVoiceItem),
    .MakeItemFonts = MakeItemFonts,
    .ImportVoice = ImportVoice,
    .ExportVoice = ExportVoice,
    .VoiceName = VoiceName,
    .VoiceAlgorithm = VoiceAlgorithm,
    .MakeUndoLevel = MakeUndoLevel,
};

} // namespace tonewright
