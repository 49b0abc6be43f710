// Paints the pages of a report on what the toolkit can print on.
#pragma once

#include "database/print_report.h"

#include <QByteArray>
#include <QPageSize>
#include <QString>

#include <functional>

class QPagedPaintDevice;
class QPainter;

namespace tonewright {

// The device as a report prints on it, a single copy on no file unless the caller says otherwise.
// `paper` and `painter`, which is not active, live longer than the device.
PrintDevice DeviceOn(QPagedPaintDevice &paper, QPainter &painter);

// What `report` prints, as a PDF file in memory, in portrait format and with the same margins and
// units as a printer's pages; empty when that is no page. Needs a QGuiApplication.
QByteArray PrintToPdf(QPageSize::PageSizeId paper, const QString &title,
                      const std::function<int(const PrintDevice &device)> &report);

} // namespace tonewright
