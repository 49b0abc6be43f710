// The windows of the welcome wizard.
#pragma once

class QWidget;

namespace tonewright {

struct WizardRequest;

// Asks whether the wizard is to be shown at a first start: ResultYes for "Proceed", ResultNo for
// "Skip" and whatever else closes the question.
int AskForWizard(QWidget *owner);

// Shows the pages of a request in one frame. WizardDismissed when "Dismiss" has ended it, which
// stores the values of the controls of all pages; else 0, and nothing is stored. A page that cannot
// be read is empty.
int ShowWizardBox(const WizardRequest &request);

} // namespace tonewright
