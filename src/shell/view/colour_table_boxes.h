// The two boxes that the colour box opens: a name for a new colour, and another table of them.
#pragma once

#include "common/reference_topic.h"
#include "shell/colour_selection.h"

#include <optional>
#include <string>

class QWidget;

namespace tonewright {

constexpr ReferenceTopic ColourHelpTopic = "COLORS"; // of the colour box too

// Asks for the name of a colour, which the user may still change. Nothing when the box was left
// without OK.
std::optional<NamedColour> RunAddColourBox(QWidget *owner, const ColourFields &fields);

// Asks for a table, beginning with the current one; its name as OpenColourTable takes it. Nothing
// when the box was left without OK.
std::optional<std::string> RunColourTableBox(QWidget *owner);

} // namespace tonewright
