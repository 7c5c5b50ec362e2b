#pragma once

#include <QString>

namespace velmora {

/// Gives the controls of one window their access keys, each key once. Texts keep their words.
class AccessKeys {
public:
    /// `taken`: the keys that other controls of the window have, in capitals.
    explicit AccessKeys(QString taken) : taken_(std::move(taken)) {}

    /// The text with "&" before the letter or digit that becomes its key: the first of a word if one is free, else any.
    /// A text that has a key already keeps it; one of which no letter is free stays without. "&&" is an ampersand.
    QString mark(QString text);

private:
    bool take(QChar key);

    QString taken_;
};

} // namespace velmora
