#pragma once

#include "Gate.h"
#include "interfaces/services/IPresentationRenderer.h"
#include "interfaces/services/ISettingsObject.h"
#include "interfaces/services/IShortcutSetting.h"
#include "interfaces/services/ITSCacheManager.h"
#include "interfaces/surfaces/IMainWindowHandle.h"

#include <QColor>
#include <QHash>
#include <QPoint>
#include <QSet>
#include <QStringList>

#include <mutex>

/** Settings made of plain values. */
class FakeSettings final : public ISettingsObject {
public:
    QString lastExportPath() const override { return exportPath; }
    void setLastExportPath(const QString &path) override { exportPath = path; }
    bool isLeftColumnShown() const override { return leftColumnShown; }
    bool isRightPanelHidden() const override { return rightPanelHidden; }

    QString exportPath;
    bool leftColumnShown = true;
    bool rightPanelHidden = false;
};

/** Shortcuts made of plain values; a few are set from the start. */
class FakeShortcuts final : public IShortcutSetting {
public:
    bool isShortcutEnabled() const override { return enabled; }
    ShortcutRecord shortcut(int nShortcutId) const override;

    bool enabled = true;
    QHash<int, QString> keys{{ZoomIn, QStringLiteral("Ctrl+=")},      {ZoomOut, QStringLiteral("Ctrl+-")},
                             {FitToWindow, QStringLiteral("Ctrl+0")}, {ActualSize, QStringLiteral("Ctrl+1")},
                             {FitToWidth, QStringLiteral("Ctrl+2")},  {MoveToRecycleBin, QStringLiteral("Del")}};
};

/** A thumbnail cache that answers requests when the test says so. GUI thread only. */
class FakeCacheManager final : public ITSCacheManager {
    Q_OBJECT

public:
    QString cacheKey(const FileInfoPtr &pInfo, const QSize &size) const override;
    int lookup(const QString &cacheKey, QPixmap *pPixmap) override;
    ThumbnailRequest createRequest(const FileInfoPtr &pInfo, const QSize &size, double fDpi) const override;
    void submitRequest(const ThumbnailRequest &request) override;
    QImage largePicture(const FileInfoPtr &pInfo) const override;

    /** Ends a request: with a picture it will be found, with a null one the request failed. */
    void finish(const QString &cacheKey, const QImage &picture);
    /** Ends every request that is under way, with small pictures. */
    void finishAll();
    /** Whether anybody waits for requests to end. */
    bool hasListeners() const;

    LookupState missing = NotYetThere;   ///< What lookup answers for keys without a picture.
    bool answersAtOnce = false;          ///< Requests end inside submitRequest.
    QVector<ThumbnailRequest> requests;  ///< Every request, in order.
    QHash<QString, QImage> pictures;     ///< By cache key.
    QSet<QString> failed;                ///< Keys of which there will be no picture.
    QHash<qint64, QImage> largePictures; ///< By file id.
};

/** Renders one-coloured pages from memory. Thread: any. */
class FakeRenderer final : public IPresentationRenderer {
public:
    /** A document: the sizes of its pages. One without pages cannot be opened. */
    void setDocument(qint64 nFileId, const QVector<QSize> &pages)
    {
        change([&] { m_documents[nFileId].pages = pages; });
    }
    /** Pages that are opened but cannot be rendered. */
    void setBrokenPages(qint64 nFileId, const QSet<int> &pages)
    {
        change([&] { m_documents[nFileId].broken = pages; });
    }

    /** The largest side that pages are rendered with, whatever is asked for. */
    void setLargestSide(int nPixels)
    {
        change([&] { m_largestSide = nPixels; });
    }
    static QColor pageColor(int nPage) { return QColor::fromHsv((nPage * 47) % 360, 90, 230).rgb(); }

    QSet<qint64> openDocuments() const { return get(m_open); }
    /** Ids of the documents whose opening began, in order. */
    QVector<qint64> openings() const { return get(m_openings); }
    /** "id:page WxH" for each page rendered, in order. */
    QStringList rendered() const { return get(m_rendered); }

    bool openDocument(qint64 nFileId, const QString &path) override;
    int pageCount(qint64 nFileId) override;
    QImage renderPage(qint64 nFileId, int nPage, const QSize &pixelSize) override;
    void closeDocument(qint64 nFileId) override;
    void closeAllDocuments() override;

    Gate openGate;   ///< Where closed, openDocument waits, until the document is closed meanwhile.
    Gate renderGate; ///< Where closed, renderPage waits.

private:
    struct Document {
        QVector<QSize> pages;
        QSet<int> broken;
        int largestSide = 0;
    };

    template <class Change>
    void change(const Change &apply)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        apply();
    }
    template <class Value>
    Value get(const Value &value) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return value;
    }

    mutable std::mutex m_mutex;
    QHash<qint64, Document> m_documents;
    QSet<qint64> m_open;
    QHash<qint64, int> m_closings;
    QVector<qint64> m_openings;
    int m_largestSide = 100000;
    QStringList m_rendered;
};

/** A main window that only remembers what was asked of it. */
class FakeMainWindow final : public IMainWindowHandle {
public:
    void moveBy(const QPoint &offset) override { moved += offset; }
    bool isMaximized() const override { return maximized; }
    void minimize() override { ++minimizeCalls; }
    void toggleMaximized() override { maximized = !maximized; }
    void close() override { ++closeCalls; }

    QPoint moved;
    bool maximized = false;
    int minimizeCalls = 0;
    int closeCalls = 0;
};
