// The program's settings with their defaults.
#include "common/settings.h"

namespace tonewright {
namespace {

// Date of this build, "Feb 22 2026"; the compiler pads a day below 10 with a blank.
std::string DateOfBuild() {
    std::string date = __DATE__;
    if (date[4] == ' ') {
        date.erase(4, 1);
    }
    return date;
}

} // namespace

std::string ApplicationPath;
std::uint32_t AuditionCurrentOctave = 5;
std::uint32_t AuditionCurrentVelocity = 100;
std::string BuildDate = DateOfBuild();
std::string ColourTableFile = "TNWRGT.CCL";
std::uint32_t CreateBackups = 1;
std::uint32_t CurrentMidiChannel = 1;
std::string DatabaseCurrentName = "Voices";
std::string DatabaseFooterFontName = "Arial";
std::uint32_t DatabaseFooterFontSize = 16;
std::string DatabaseHeaderFontName = "Arial";
std::uint32_t DatabaseHeaderFontSize = 32;
std::string DatabaseItemFontName = "Arial";
std::uint32_t DatabaseItemFontSize = 14;
std::uint32_t DatabaseMakePrettyNames = 1;
std::uint32_t DatabaseManFieldDelay = 600;
std::uint32_t DatabaseNoDuplicates = 1;
std::uint32_t DatabaseSortMode = 107;
std::string DefaultPrinterName;
std::uint32_t DialogUpdateTime = 250;
std::uint32_t DocumentBrowserFlags = 127;
std::string DocumentBrowserPath;
std::uint32_t DownloadOnOpen = 0;
std::uint32_t FileMenuRange = 10;
std::uint32_t FileTipDelay = 500;
std::uint32_t FileTipShow = 1;
std::uint32_t FileWindowX = 0;
std::uint32_t FileWindowY = 0;
std::uint32_t ImageFileOpenIndex = 0;
std::uint32_t LastTipDate = 0;
std::uint32_t MaxUndoLevel = 3;
std::uint32_t MiddleButtonAudition = 1;
std::string OpenExportPath;
std::string OpenImportPath;
std::string OpenPath;
std::uint32_t OpenRecentDocument = 0;
std::uint32_t PatchLevel = 1;
std::string RecentDocumentPath;
std::uint32_t RememberFileHistoryCount = 10;
std::uint32_t RememberFileHistoryCover = 1;
std::uint32_t RememberFileHistoryEnable = 1;
std::uint32_t RememberFileHistorySize = 48;
std::uint32_t SelectKeyboardAutodetect = 1;
std::string SelectKeyboardMidiIn;
std::string SelectKeyboardMidiOut;
std::string SelectKeyboardName;
std::uint32_t SetupPageIndex = 0;
std::uint32_t ShowDriverMessage = 1;
std::uint32_t ShowStartupWindow = 1;
std::uint32_t ShowTipOfTheDay = 1;
std::uint32_t SoftButtons = 1;
std::uint32_t StartMonday = 0;
std::uint32_t SysexWait = 1500;
std::uint32_t TipFont01Size = 16;
std::uint32_t TipOfTheDay = 0;
std::string ThemeCurrent;
std::uint32_t VerboseRightClickMenu = 1;
std::uint32_t VersionNumber = 544;
std::uint32_t VoiceEditPage = 0;
std::uint32_t WarnDatabaseChanged = 1;
std::uint32_t WarnShowManual = 1;
std::uint32_t ShowWelcomeWizard = 1;

} // namespace tonewright
