#include "RecentFiles.h"

namespace velmora {

namespace {

QString keyOf(int index) {
    return QStringLiteral("Recent File List/File%1").arg(index + 1);
}

} // namespace

RecentFiles::RecentFiles(QObject* parent) : QObject(parent) {
    for (int i = 0; i < capacity; ++i) {
        const QString path = settings_.value(keyOf(i)).toString();
        if (!path.isEmpty() && !paths_.contains(path)) {
            paths_.append(path);
        }
    }
}

void RecentFiles::add(const QString& path) {
    paths_.removeAll(path);
    paths_.prepend(path);
    paths_ = paths_.first(std::min<qsizetype>(paths_.size(), capacity));
    for (int i = 0; i < paths_.size(); ++i) {
        settings_.setValue(keyOf(i), paths_.at(i));
    }
    emit changed();
}

} // namespace velmora
