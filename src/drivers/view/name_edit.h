// The line of text for the name of a voice: what instruments can show is typed, and what a name
// holds already stays.
#pragma once

#include "common/view/filtered_edit.h"

namespace tonewright {

// Typing takes characters below 128; the attempt to type another one beeps. Of what is pasted the
// printable characters of Latin-1 go in.
class NameEdit : public FilteredEdit {
public:
    explicit NameEdit(QWidget *parent = nullptr);

    void SetLength(int characters); // the most that a name of the family has

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

} // namespace tonewright
