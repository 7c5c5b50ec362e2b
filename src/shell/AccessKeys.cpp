#include "AccessKeys.h"

namespace velmora {

namespace {

bool isAmpersandPair(const QString& text, qsizetype i) {
    return text.at(i) == QLatin1Char('&') && i + 1 < text.size() && text.at(i + 1) == QLatin1Char('&');
}

/// Where the mark of the key stands that the text brings along; -1 when it has none.
qsizetype ownMark(const QString& text) {
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (isAmpersandPair(text, i)) {
            ++i;
        } else if (text.at(i) == QLatin1Char('&')) {
            return i;
        }
    }
    return -1;
}

} // namespace

bool AccessKeys::take(QChar key) {
    if (!key.isLetterOrNumber() || taken_.contains(key)) {
        return false;
    }
    taken_.append(key);
    return true;
}

QString AccessKeys::mark(QString text) {
    if (ownMark(text) >= 0) {
        takeOwn(text);
        return text;
    }
    for (const bool wordsOnly : {true, false}) {
        for (qsizetype i = 0; i < text.size(); ++i) {
            const bool startsWord = i == 0 || !text.at(i - 1).isLetterOrNumber();
            if ((startsWord || !wordsOnly) && take(text.at(i).toUpper())) {
                return text.insert(i, QLatin1Char('&'));
            }
        }
    }
    return text;
}

bool AccessKeys::takeOwn(const QString& text) {
    const qsizetype mark = ownMark(text);
    return mark < 0 || take(text.at(mark + 1).toUpper());
}

QString AccessKeys::markAnew(QString text) {
    if (const qsizetype own = ownMark(text); own >= 0) {
        text.remove(own, 1);
    }
    return mark(text);
}

QStringList withKeysOnce(QStringList texts) {
    AccessKeys keys{QString()};
    QList<QString*> second;
    for (QString& text : texts) {
        if (!keys.takeOwn(text)) {
            second.append(&text);
        }
    }
    // Only now is it known which keys are left.
    for (QString* text : second) {
        *text = keys.markAnew(*text);
    }
    return texts;
}

} // namespace velmora
