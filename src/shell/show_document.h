// The Help menu: shows a help page or another document in a browser, and the boxes about the
// program and the machine.
#pragma once

#include "common/reference_topic.h"
#include "common/setting_rows.h"

#include <string>

class QWidget;

namespace tonewright {

// The address that is shown: "file:///" and the path, unless it begins with "http", then the
// fragment; blanks escaped.
std::string DocumentAddress(const std::string &path, const std::string &fragment);

// Opens the document with the user's browser, else with the first of the browsers of
// DocumentBrowserFlags that starts, else with the platform's own opener; a message when none did.
// `fragment` begins with "#" or is empty. 1 when shown.
int ShowDocument(QWidget *window, const std::string &path, const std::string &fragment,
                 bool maximised);

// The reference page at a topic.
int ShowHelpTopic(QWidget *window, ReferenceTopic topic);
// The same at what it says of a setting; of null, at what it says of them all.
int ShowSettingHelp(QWidget *window, const ConfigKey *setting);

int RunManual();
int RunHelp();
int RunAbout();
int RunSystemInformation();

} // namespace tonewright
