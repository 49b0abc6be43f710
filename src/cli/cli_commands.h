// The commands of the command-line program; what each takes stands in command_table. Each
// returns the exit status and explains a failure on standard error.
#pragma once

#include "cli/command_line.h"

namespace tonewright {

int CliList(const CliCall &call);
int CliCheck(const CliCall &call);
int CliSave(const CliCall &call);
int CliMove(const CliCall &call);
int CliExport(const CliCall &call);
int CliImport(const CliCall &call);
int CliShow(const CliCall &call);
int CliEdit(const CliCall &call);
int CliPicture(const CliCall &call);
int CliConfig(const CliCall &call);
int CliSettings(const CliCall &call);
int CliHistory(const CliCall &call);
int CliColours(const CliCall &call);
int CliThemes(const CliCall &call);
int CliTip(const CliCall &call);
int CliSystemInformation(const CliCall &call);
int CliPorts(const CliCall &call);
int CliSound(const CliCall &call);
int CliFind(const CliCall &call);
int CliUpload(const CliCall &call);
int CliUploadVoice(const CliCall &call);
int CliDownload(const CliCall &call);
int CliPlay(const CliCall &call);
int CliRender(const CliCall &call);
int CliMemory(const CliCall &call);
int CliRefaceSettingsGet(const CliCall &call);
int CliRefaceSettingsSet(const CliCall &call);
int CliRefaceSettingsSave(const CliCall &call);
int CliRefaceSettingsLoad(const CliCall &call);
int CliPrint(const CliCall &call);
int CliDbNames(const CliCall &call);
int CliDbAdd(const CliCall &call);
int CliDbList(const CliCall &call);
int CliDbFind(const CliCall &call);
int CliDbExport(const CliCall &call);
int CliDbInsert(const CliCall &call);
int CliDbCheck(const CliCall &call);
int CliDbPrint(const CliCall &call);
int CliIdentify(const CliCall &call);
int CliRescue(const CliCall &call);
int CliArchiveAdd(const CliCall &call);
int CliArchiveUpdate(const CliCall &call);
int CliArchiveFind(const CliCall &call);
int CliArchiveDuplicates(const CliCall &call);
int CliArchiveSimilar(const CliCall &call);
int CliArchiveShow(const CliCall &call);
int CliArchiveMakeBank(const CliCall &call);
int CliArchiveForget(const CliCall &call);
int CliArchiveCheck(const CliCall &call);
int CliComplete(const CliCall &call);

} // namespace tonewright
