#pragma once

#include <QObject>
#include <QSettings>
#include <QStringList>

namespace velmora {

/// The list of recent files, kept between runs. The newest stands first.
class RecentFiles : public QObject {
    Q_OBJECT

public:
    static constexpr int capacity = 4;

    explicit RecentFiles(QObject* parent = nullptr);

    const QStringList& paths() const { return paths_; }
    /// Puts `path` on top; the oldest beyond the capacity drops out.
    void add(const QString& path);

signals:
    void changed();

private:
    QSettings settings_;
    QStringList paths_;
};

} // namespace velmora
