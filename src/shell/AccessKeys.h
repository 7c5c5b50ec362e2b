#pragma once

#include <QString>
#include <QStringList>

namespace velmora {

/// Gives the controls of one window their access keys, each key once. Texts keep their words.
class AccessKeys {
public:
    /// `taken`: the keys that other controls of the window have, in capitals.
    explicit AccessKeys(QString taken) : taken_(std::move(taken)) {}

    /// The text with "&" before the letter or digit that becomes its key: the first of a word if one is free, else any.
    /// A text that has a key already keeps it; one of which no letter is free stays without. "&&" is an ampersand.
    QString mark(QString text);
    /// Takes the key that the text brings along, if it has one; false when another text has that key.
    bool takeOwn(const QString& text);
    /// The text with a key that is still free in place of its own.
    QString markAnew(QString text);

private:
    bool take(QChar key);

    QString taken_;
};

/// The texts of one menu, of which the first that brings along a key keeps it, and each further one gets a key that
/// none has. A text without a key stays without.
QStringList withKeysOnce(QStringList texts);

} // namespace velmora
