#include "AccessKeys.h"

namespace velmora {

namespace {

bool isAmpersandPair(const QString& text, qsizetype i) {
    return text.at(i) == QLatin1Char('&') && i + 1 < text.size() && text.at(i + 1) == QLatin1Char('&');
}

/// The key that the text brings along; null when it has none.
QChar ownKey(const QString& text) {
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (isAmpersandPair(text, i)) {
            ++i;
        } else if (text.at(i) == QLatin1Char('&')) {
            return text.at(i + 1).toUpper();
        }
    }
    return {};
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
    if (const QChar key = ownKey(text); !key.isNull()) {
        take(key);
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

} // namespace velmora
