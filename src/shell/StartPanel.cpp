#include "StartPanel.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QLabel>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "RecentFiles.h"
#include "command_table.h"
#include "key_list.h"
#include "qt_text.h"

namespace velmora {

namespace {

const QString commandScheme = QStringLiteral("command");

QString link(const QString& target, const QString& words) {
    return QStringLiteral("<a href=\"%1\">%2</a>").arg(target.toHtmlEscaped(), words.toHtmlEscaped());
}

QString commandLink(const char* id) {
    const Command* command = findCommand(id);
    QString words = qtText(plainText(command->menuText));
    if (*command->accelerator != '\0') {
        words += QStringLiteral(" (%1)").arg(QString::fromLatin1(command->accelerator));
    }
    return link(commandScheme + QLatin1Char(':') + QString::fromLatin1(id), words);
}

QString fileLink(const QString& path) {
    return link(QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded), QFileInfo(path).fileName());
}

QString paragraph(const QString& heading, const QStringList& entries) {
    return entries.isEmpty()
               ? QString()
               : QStringLiteral("<p><b>%1</b><br>%2</p>").arg(heading, entries.join(QLatin1String("<br>")));
}

} // namespace

StartPanel::StartPanel(const RecentFiles& recent, QWidget* parent)
    : QFrame(parent), recent_(recent), text_(new QLabel(this)) {
    setObjectName(QStringLiteral("startPanel"));
    setAutoFillBackground(true);
    setFrameShape(QFrame::StyledPanel);
    text_->setObjectName(QStringLiteral("startText"));
    text_->setTextFormat(Qt::RichText);
    text_->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    text_->setAccessibleName(tr("How to begin"));
    // The view keeps the keyboard until somebody goes here.
    text_->setFocusPolicy(Qt::TabFocus);
    auto* column = new QVBoxLayout(this);
    column->addWidget(text_);
    connect(text_, &QLabel::linkActivated, this, [this](const QString& target) {
        const QUrl url(target);
        if (url.scheme() == commandScheme) {
            emit commandChosen(url.path());
        } else {
            emit fileChosen(url.toLocalFile());
        }
    });
    connect(&recent_, &RecentFiles::changed, this, &StartPanel::fill);
    parent->installEventFilter(this);
    fill();
}

QString StartPanel::examplesFolder() {
    const QString here = QCoreApplication::applicationDirPath();
    // Installed, and as built.
    const std::array<QString, 2> places = {here + QStringLiteral("/../share/velmora/examples"),
                                           here + QStringLiteral("/../../../examples")};
    const auto* const found =
        std::find_if(places.begin(), places.end(), [](const QString& place) { return QDir(place).exists(); });
    return found == places.end() ? QString() : QDir(*found).canonicalPath();
}

void StartPanel::fill() {
    QStringList examples;
    if (const QString folder = examplesFolder(); !folder.isEmpty()) {
        const QStringList models = {QStringLiteral("*.apt"), QStringLiteral("*.skl"), QStringLiteral("*.stl")};
        for (const QFileInfo& file : QDir(folder).entryInfoList(models, QDir::Files, QDir::Name)) {
            examples.append(fileLink(file.absoluteFilePath()));
        }
    }
    QStringList recent;
    for (const QString& path : recent_.paths()) {
        if (QFileInfo(path).isFile()) {
            recent.append(fileLink(path));
        }
    }
    QString mouse;
    for (const KeyEntry& act : mouseActs()) {
        mouse += QStringLiteral("<tr><td>%1&nbsp;&nbsp;</td><td>%2</td></tr>")
                     .arg(qtText(act.keys).toHtmlEscaped(), qtText(act.act).toHtmlEscaped());
    }
    text_->setText(paragraph(tr("Begin"), {commandLink("file.open"), commandLink("file.import"),
                                           commandLink("file.new"), tr("or drop a file here")}) +
                   paragraph(tr("Recent files"), recent) + paragraph(tr("Examples"), examples) +
                   QStringLiteral("<p><b>%1</b></p><table>%2</table>").arg(tr("In the view"), mouse) +
                   QStringLiteral("<p>%1 &nbsp; %2</p>").arg(commandLink("help.keys"), commandLink("help.topics")));
    settle();
}

/// In the middle, and never larger than the view.
void StartPanel::settle() {
    const QSize room = parentWidget()->size();
    resize(sizeHint().boundedTo(room));
    move((room.width() - width()) / 2, (room.height() - height()) / 2);
}

void StartPanel::showEvent(QShowEvent* event) {
    QFrame::showEvent(event);
    fill();
    raise();
}

bool StartPanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        settle();
    }
    return QFrame::eventFilter(watched, event);
}

} // namespace velmora
