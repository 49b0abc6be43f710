// Reads a page out of its template.
#include "shell/view/wizard_page.h"

#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>

namespace tonewright {
namespace {

constexpr int LargestMeasure = 4096; // dialog units

int ReadMeasure(QXmlStreamReader &reader) {
    return std::clamp(reader.readElementText().toInt(), -LargestMeasure, LargestMeasure);
}

QRect ReadRectangle(QXmlStreamReader &reader) {
    int x = 0, y = 0, width = 0, height = 0;
    while (reader.readNextStartElement()) {
        if (reader.name() == u"x") {
            x = ReadMeasure(reader);
        } else if (reader.name() == u"y") {
            y = ReadMeasure(reader);
        } else if (reader.name() == u"width") {
            width = ReadMeasure(reader);
        } else if (reader.name() == u"height") {
            height = ReadMeasure(reader);
        } else {
            reader.skipCurrentElement();
        }
    }
    return {x, y, width, height};
}

// The value of a property, which stands in an element of its type.
QString ReadValue(QXmlStreamReader &reader, QStringView type) {
    QString text;
    while (reader.readNextStartElement()) {
        if (reader.name() == type) {
            text = reader.readElementText();
        } else {
            reader.skipCurrentElement();
        }
    }
    return text;
}

void ReadProperty(QXmlStreamReader &reader, PageControl &control) {
    const QString name = reader.attributes().value("name").toString();
    if (name == u"text" || name == u"title") {
        control.title = ReadValue(reader, u"string");
    } else if (name == u"checked") {
        control.checked = ReadValue(reader, u"bool") == u"true";
    } else if (name == u"frameShape") {
        control.frameShape = ReadValue(reader, u"enum");
    } else if (name == u"geometry") {
        while (reader.readNextStartElement()) {
            control.place = ReadRectangle(reader);
        }
    } else {
        reader.skipCurrentElement();
    }
}

QString ReadItem(QXmlStreamReader &reader) {
    PageControl item;
    while (reader.readNextStartElement()) {
        if (reader.name() == u"property") {
            ReadProperty(reader, item);
        } else {
            reader.skipCurrentElement();
        }
    }
    return item.title;
}

std::uint32_t NumberOfName(QStringView name) {
    constexpr QStringView prefix = u"control_";
    bool isNumber = false;
    const auto number =
        name.startsWith(prefix) ? name.mid(prefix.size()).toUInt(&isNumber) : NoControlNumber;
    return isNumber ? number : NoControlNumber;
}

// A widget; what stands directly in it goes to `children`, where that is wanted.
PageControl ReadWidget(QXmlStreamReader &reader, std::vector<PageControl> *children) {
    PageControl control;
    control.className = reader.attributes().value("class").toString();
    control.number = NumberOfName(reader.attributes().value("name"));
    while (reader.readNextStartElement()) {
        if (reader.name() == u"property") {
            ReadProperty(reader, control);
        } else if (reader.name() == u"item") {
            control.items += ReadItem(reader);
        } else if (children && reader.name() == u"widget") {
            children->push_back(ReadWidget(reader, nullptr));
        } else {
            reader.skipCurrentElement();
        }
    }
    return control;
}

} // namespace

std::optional<WizardPage> ReadWizardPage(std::uint32_t number) {
    QFile file(QStringLiteral(":/pages/%1.ui").arg(number));
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    QXmlStreamReader reader(&file);
    WizardPage page;
    if (reader.readNextStartElement() && reader.name() == u"ui") {
        while (reader.readNextStartElement()) {
            if (reader.name() == u"widget") {
                page.size = ReadWidget(reader, &page.controls).place.size();
            } else {
                reader.skipCurrentElement();
            }
        }
    }
    return reader.hasError() || page.size.isEmpty() ? std::nullopt : std::optional(page);
}

} // namespace tonewright
