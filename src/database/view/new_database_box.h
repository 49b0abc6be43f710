// The box that asks for the name of a new catalogue.
#pragma once

#include <optional>
#include <string>
#include <vector>

class QWidget;

namespace tonewright {

// Lists the names that there are and lets the user write another one, beginning with `start`; a
// name that IsNewDatabaseName does not take cannot be accepted. Nothing when the user cancels.
// Texts are UTF-8.
std::optional<std::string> RunNewDatabaseBox(QWidget *owner,
                                             const std::vector<std::string> &existing,
                                             const std::string &start);

} // namespace tonewright
