// Precompiled for the views: the headers that nearly every view includes. Kept small on purpose; a
// precompiled <QtWidgets> makes the build slower.
#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>
