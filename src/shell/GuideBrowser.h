#pragma once

#include <QTextBrowser>

namespace velmora {

/// Shows pages of the guide: scrolls to the heading that a link names, keeps pictures within the window.
class GuideBrowser : public QTextBrowser {
    Q_OBJECT

public:
    explicit GuideBrowser(QWidget* parent = nullptr);

    /// Marks every place of the page where one of the words stands; none for an empty list.
    void markWords(const QStringList& words);

protected:
    QVariant loadResource(int type, const QUrl& name) override;
    void doSetSource(const QUrl& url, QTextDocument::ResourceType type) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void dressPage(const QUrl& url);
    void dressHeadings();
    void dressTables();
    void fitPictures();
    void scrollToHeading(const QString& anchor);

    QUrl shown_; ///< the page in the document; source() names it only once the page is in the history
};

} // namespace velmora
