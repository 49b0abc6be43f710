// The program's settings: one variable each, with its default, read directly by every layer. The
// table that ties them to keys of the configuration file and to controls is shell/settings_file.
//
// Integers are kept as the file gives them, modulo 2^32, without a range: whoever reads one
// guards against values that make no sense. Texts are UTF-8 of at most 260 bytes.
#pragma once

#include <cstdint>
#include <string>

namespace tonewright {

constexpr std::size_t SettingTextLimit = 260; // bytes

extern std::string ApplicationPath; // folder of the executable, with a trailing separator
extern std::uint32_t AuditionCurrentOctave;
extern std::uint32_t AuditionCurrentVelocity;
extern std::string BuildDate; // "Feb 22 2026"
extern std::string ColourTableFile;
extern std::uint32_t CreateBackups;
extern std::uint32_t CurrentMidiChannel; // 1 to 16
extern std::string DatabaseCurrentName;
extern std::string DatabaseFooterFontName;
extern std::uint32_t DatabaseFooterFontSize;
extern std::string DatabaseHeaderFontName;
extern std::uint32_t DatabaseHeaderFontSize;
extern std::string DatabaseItemFontName;
extern std::uint32_t DatabaseItemFontSize;
extern std::uint32_t DatabaseMakePrettyNames;
extern std::uint32_t DatabaseManFieldDelay; // milliseconds
extern std::uint32_t DatabaseNoDuplicates;
extern std::uint32_t DatabaseSortMode;
extern std::string DefaultPrinterName;
extern std::uint32_t DialogUpdateTime;
extern std::uint32_t DocumentBrowserFlags;
extern std::string DocumentBrowserPath;
extern std::uint32_t DownloadOnOpen;
extern std::uint32_t FileMenuRange;
extern std::uint32_t FileTipDelay; // milliseconds
extern std::uint32_t FileTipShow;
extern std::uint32_t FileWindowX; // pixels
extern std::uint32_t FileWindowY;
extern std::uint32_t ImageFileOpenIndex;
extern std::uint32_t LastTipDate;
extern std::uint32_t MaxUndoLevel;
extern std::uint32_t MiddleButtonAudition;
extern std::string OpenExportPath; // folders, with a trailing separator
extern std::string OpenImportPath;
extern std::string OpenPath;
extern std::uint32_t OpenRecentDocument;
extern std::uint32_t PatchLevel;
extern std::string RecentDocumentPath;
extern std::uint32_t RememberFileHistoryCount;
extern std::uint32_t RememberFileHistoryCover;
extern std::uint32_t RememberFileHistoryEnable;
extern std::uint32_t RememberFileHistorySize; // pixels
extern std::uint32_t SelectKeyboardAutodetect;
extern std::string SelectKeyboardMidiIn;
extern std::string SelectKeyboardMidiOut;
extern std::string SelectKeyboardName;
extern std::uint32_t SetupPageIndex;
extern std::uint32_t ShowDriverMessage;
extern std::uint32_t ShowStartupWindow;
extern std::uint32_t ShowTipOfTheDay;
extern std::uint32_t SoftButtons; // 0 none, 1 soft, 2 flex, 3 wedge
extern std::uint32_t StartMonday;
extern std::uint32_t SysexWait; // milliseconds
extern std::uint32_t TipFont01Size;
extern std::uint32_t TipOfTheDay;
extern std::string ThemeCurrent;
extern std::uint32_t VerboseRightClickMenu;
extern std::uint32_t VersionNumber;
extern std::uint32_t VoiceEditPage;
extern std::uint32_t WarnDatabaseChanged;
extern std::uint32_t WarnShowManual;
extern std::uint32_t ShowWelcomeWizard;

} // namespace tonewright
