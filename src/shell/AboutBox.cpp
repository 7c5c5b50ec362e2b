#include "AboutBox.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

#include "about.h"
#include "qt_text.h"

namespace velmora {

namespace {

constexpr int pictureSize = 64;

} // namespace

AboutBox::AboutBox(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("aboutBox"));
    setWindowTitle(tr("About Velmora"));
    auto* picture = new QLabel(this);
    picture->setPixmap(QIcon(QStringLiteral(":/icons/velmora.svg")).pixmap(pictureSize, pictureSize));
    picture->setAlignment(Qt::AlignTop);
    auto* text = new QLabel(qtText(aboutText()), this);
    text->setObjectName(QStringLiteral("aboutText"));
    text->setTextFormat(Qt::PlainText);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto* row = new QHBoxLayout;
    row->setSpacing(16);
    row->addWidget(picture);
    row->addWidget(text, 1);
    auto* column = new QVBoxLayout(this);
    column->addLayout(row);
    column->addWidget(buttons);
    column->setSizeConstraint(QLayout::SetFixedSize);
}

} // namespace velmora
