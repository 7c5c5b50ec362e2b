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

AboutBox::AboutBox(const QString& openGl, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("aboutBox"));
    setWindowTitle(tr("About Velmora"));
    auto* picture = new QLabel(this);
    picture->setPixmap(QIcon(QStringLiteral(":/icons/velmora.svg")).pixmap(pictureSize, pictureSize));
    picture->setAlignment(Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    const auto addText = [this, texts](const char* name, const QString& words) {
        auto* label = new QLabel(words, this);
        label->setObjectName(QString::fromLatin1(name));
        label->setTextFormat(Qt::PlainText);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        texts->addWidget(label);
    };
    addText("aboutText", qtText(aboutText()));
    addText("aboutParts", tr("Qt %1\nOpenGL %2\n\nMIT licence, without any warranty")
                              .arg(QString::fromLatin1(qVersion()), openGl.isEmpty() ? tr("is not there") : openGl));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto* row = new QHBoxLayout;
    row->setSpacing(16);
    row->addWidget(picture);
    row->addLayout(texts, 1);
    auto* column = new QVBoxLayout(this);
    column->addLayout(row);
    column->addWidget(buttons);
    column->setSizeConstraint(QLayout::SetFixedSize);
}

} // namespace velmora
