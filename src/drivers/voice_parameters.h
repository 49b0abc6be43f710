// The parameters of a voice, one row each, as the editor's pages show them and the command line
// names them: one table for the voice as a whole and one for an operator, for every family alike.
#pragma once

#include "core/voice_object.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tonewright {

enum class ParameterKind {
    Name,        // the bytes of the name: a line of text
    Number,      // a whole number: a line of text with arrows and, with `hasBar`, a scroll bar
    Frequency,   // hundredths in two bytes, the whole part first: a line of text with arrows
    List,        // the index of an item: a drop-down list
    Algorithm,   // the same, its items shown as pictures; on the command line counted from 1
    Check,       // 1 or 0: a check box
    OperatorBit, // one bit of a byte of the voice for each operator, the first operator's the
                 // highest: a check box
};

// When the page of a row stores what its controls show.
enum class ParameterTaken {
    AtOnce,       // with each command of the controls, and when the page is collected
    AtCollection, // only then
    Never,        // the controls stand there and nothing is stored
};

// Where the controls of a row stand beside its own and its arrows, by number.
constexpr std::uint32_t BarOffset = 12000;
constexpr std::uint32_t LabelOffset = 20000;

struct VoiceParameter {
    std::uint32_t control = 0; // number of the edit, list or check box
    // Beside an edit or a list, the caption of a check box; empty where no page has controls for
    // the row, and what is collected is 0.
    const char *label = "";
    const char *name = ""; // on the command line; empty where it stands for nothing stored
    ParameterKind kind = ParameterKind::Number;
    int minimum = 0, maximum = 0; // of what is shown; of a list the indices of its items
    // The byte in the part of the voice that the page shows: in the voice-wide bytes, of an
    // operator's row in the bytes of that operator. Of an OperatorBit always in the voice-wide
    // ones.
    std::size_t offset = 0;
    int bias = 0; // what is shown is what is stored minus this
    // The same while RefaceZero64 is on, where it is another one.
    std::optional<int> instrumentBias = {};
    int packedBits = 8; // how many bits a bank's file has for it
    int readBits = 16;  // how many of them are read at most unless WholeDetune is on
    // A bank's file, which has no OperatorBit, has 0 here for an operator that is off.
    bool tellsOperatorIsOn = false;
    const char *items = nullptr; // of a list: the texts, separated by ";"
    ParameterTaken taken = ParameterTaken::AtOnce;
    bool hasBar = false;
    // The check boxes of the page that must be checked for the row to be enabled; 0: none.
    std::array<std::uint32_t, 2> gates = {};

    constexpr bool IsList() const {
        return kind == ParameterKind::List || kind == ParameterKind::Algorithm;
    }
    constexpr bool IsCheck() const {
        return kind == ParameterKind::Check || kind == ParameterKind::OperatorBit;
    }
    // Shown in a line of text, with arrows unless it is the name.
    constexpr bool IsEdit() const { return !IsList() && !IsCheck(); }
};

// What a family says of its voices to editor and command line.
struct VoiceParameters {
    std::span<const VoiceParameter> voice;     // in the order in which they are read
    std::span<const VoiceParameter> operators; // of each operator
    int operatorCount = 0;                     // blocks of operators in a voice
    int lastPageBlock = 0; // the pages of all operators behind this block (from 0) show it too
    std::size_t nameSize = 0;
    // Where a part begins in `bytes` of a block: part 0 the voice-wide bytes, 1 to operatorCount
    // the operators. The caller has seen that the block is a whole voice.
    std::size_t (*PartOffset)(const VoiceObject &voice, int part) = nullptr;
    // Whether a block is a whole voice of the family, by its driver id and its sizes, with its
    // payload behind its header, so that no parameter is a part of that.
    bool (*IsWhole)(const VoiceObject &voice) = nullptr;
    // The place of a voice in its list, from index 0 on, in the words of the editor.
    std::string (*PlaceText)(int index) = nullptr;
};

// The parts of a voice in what follows: 0 for rows of `voice`, 1 to operatorCount for rows of
// `operators`. The voice is a whole one of the family and the row no name.

// What is shown of the row is what is stored minus this, now.
int BiasOf(const VoiceParameter &row);
// What is stored, as it is shown: the number, of a frequency its hundredths, of a check box 0 or 1.
// Nothing is limited: bytes out of range show as they are.
int ShownValue(const VoiceParameters &family, const VoiceParameter &row, const VoiceObject &voice,
               int part);
// Stores it: the low eight bits of a number, 1 for any check that is not 0. All other bits and
// bytes stay.
void StoreShownValue(const VoiceParameters &family, const VoiceParameter &row, VoiceObject &voice,
                     int part, int shown);

// The name without what does not count at its end, in the instrument's bytes.
std::string ShownName(const VoiceParameters &family, const VoiceParameter &row,
                      const VoiceObject &voice);
// Stores at most nameSize bytes of `text`, with zero bytes behind them.
void StoreShownName(const VoiceParameters &family, const VoiceParameter &row, VoiceObject &voice,
                    const std::string &text);
// What stands for a name that is left empty.
constexpr const char *NameForNone = "Untitled";

} // namespace tonewright
