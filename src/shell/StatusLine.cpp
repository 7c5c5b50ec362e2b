#include "StatusLine.h"

#include <QLabel>
#include <QLayout>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>

#include "keyboard_locks.h"

namespace velmora {

namespace {

constexpr int progressSteps = 100;

} // namespace

StatusLine::StatusLine(QWidget* parent) : QStatusBar(parent), message_(new QLabel(this)), mode_(new QLabel(this)) {
    setObjectName(QStringLiteral("statusLine"));
    message_->setObjectName(QStringLiteral("message"));
    message_->setTextFormat(Qt::PlainText);
    // A long message must not widen the frame.
    message_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    addWidget(message_, 1);
    progress_ = new QProgressBar(this);
    progress_->setObjectName(QStringLiteral("progress"));
    progress_->setRange(0, progressSteps);
    progress_->setMaximumWidth(160);
    progress_->setAccessibleName(tr("Progress"));
    progress_->hide();
    addPermanentWidget(progress_);
    cancel_ = new QPushButton(tr("Cancel"), this);
    cancel_->setObjectName(QStringLiteral("cancelWork"));
    cancel_->setToolTip(tr("Gives the work up (Esc): the model stays as it was"));
    cancel_->setFocusPolicy(Qt::NoFocus);
    // The line is as high as without it.
    cancel_->setMaximumHeight(message_->sizeHint().height() + 4);
    cancel_->hide();
    addPermanentWidget(cancel_);
    mode_->setObjectName(QStringLiteral("mode"));
    mode_->setAccessibleName(tr("Mouse mode"));
    mode_->setTextFormat(Qt::PlainText);
    addPermanentWidget(mode_);
    caps_ = addIndicator(QStringLiteral("CAPS"), tr("Caps Lock"));
    num_ = addIndicator(QStringLiteral("NUM"), tr("Num Lock"));
    scroll_ = addIndicator(QStringLiteral("SCRL"), tr("Scroll Lock"));
}

QLabel* StatusLine::addIndicator(const QString& name, const QString& accessibleName) {
    auto* indicator = new QLabel(name, this);
    indicator->setObjectName(name);
    indicator->setAccessibleName(accessibleName);
    indicator->setAlignment(Qt::AlignCenter);
    indicator->setMinimumWidth(indicator->sizeHint().width() + 8);
    indicator->clear();
    addPermanentWidget(indicator);
    return indicator;
}

void StatusLine::showText(const QString& text) {
    text_ = text;
    message_->setText(text);
    if (message_->isVisible()) {
        message_->repaint();
    }
}

void StatusLine::showHint(const QString& hint) {
    message_->setText(hint.isEmpty() ? text_ : hint);
}

void StatusLine::showMode(const QString& mode) {
    modeText_ = mode;
    QStringList words{modeText_, pointed_};
    words.removeAll(QString());
    mode_->setText(words.join(QStringLiteral(": ")));
}

void StatusLine::showPointed(const QString& text) {
    pointed_ = text;
    showMode(modeText_);
}

void StatusLine::refreshLocks() {
    const KeyboardLocks locks = keyboardLocks();
    const auto show = [](QLabel* indicator, bool on) { indicator->setText(on ? indicator->objectName() : QString()); };
    show(caps_, locks.caps);
    show(num_, locks.num);
    show(scroll_, locks.scroll);
}

void StatusLine::showProgress(double fraction) {
    // Written so that what is no number counts as nothing done.
    const int step = fraction > 0.0 ? static_cast<int>(std::min(fraction, 1.0) * progressSteps) : 0;
    if (!progress_->isHidden() && progress_->value() == step) {
        return;
    }
    progress_->setValue(step);
    if (progress_->isHidden()) {
        progress_->show();
        cancel_->show();
        showHint(work_);
        // The event loop, which would make room for the bar, is not running.
        layout()->activate();
        repaint();
    } else {
        progress_->repaint();
    }
}

bool StatusLine::showsProgress() const {
    return !progress_->isHidden();
}

void StatusLine::hideProgress() {
    if (showsProgress()) {
        progress_->hide();
        cancel_->hide();
        showHint({});
    }
}

} // namespace velmora
