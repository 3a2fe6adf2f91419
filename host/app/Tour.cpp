#include "app/Tour.h"

#include "app/FileGridView.h"
#include "app/HostSession.h"
#include "app/MainWindow.h"
#include "app/PreviewController.h"
#include "library/FileTypes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QStackedWidget>
#include <QTextStream>
#include <QWheelEvent>
#include <QtTest/QTest>

namespace {

constexpr int k_nPollMsec = 60;
constexpr int k_nStepTimeoutMsec = 30000;
/** Looks without a change after which an animation has ended. */
constexpr int k_nStillPolls = 3;

/** Places of the tool bar's round buttons, from the left. */
enum ToolButton { RotateButton = 3, FlipButton = 4 };

/** Page of the preview that shows pictures. */
constexpr int k_nPicturePage = 0;

void say(const QString &text)
{
    QTextStream(stdout) << text << QLatin1Char('\n');
}

bool isDamaged(const FileRecord &record)
{
    for (const char *word : {"broken", "truncated", "damaged", "zero", "empty", "corrupt"}) {
        if (record.fileName().contains(QLatin1String(word), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

} // namespace

Tour::Tour(HostSession *pSession, const QString &folder)
    : m_pSession(pSession)
    , m_folder(folder)
{
    connect(&m_poll, &QTimer::timeout, this, &Tour::check);
}

Tour::~Tour() = default;

void Tour::start()
{
    if (!QDir().mkpath(m_folder)) {
        finish(EXIT_FAILURE, QStringLiteral("the folder %1 cannot be made").arg(m_folder));
        return;
    }
    addGridSteps();
    m_poll.start(k_nPollMsec);
    next();
}

void Tour::addGridSteps()
{
    m_steps.push_back({QStringLiteral("folder in the grid"), [] {},
                       [this] {
                           return m_pSession->window()->isActiveWindow() && !m_pSession->library()->isScanning() &&
                                  m_pSession->model().rowCount() > 0 && !m_pSession->window()->areThumbnailsComing() &&
                                  isStill();
                       }});
    // What follows depends on the files found.
    m_steps.push_back({QString(), [this] { addFilmSteps(); },
                       [] {
                           return true;
                       }});
}

void Tour::addFilmSteps()
{
    const FileRecordPtr pPicture = largestPicture();
    if (pPicture == nullptr) {
        finish(EXIT_FAILURE, QStringLiteral("there is no picture to show in this folder"));
        return;
    }
    addPreviewSteps(pPicture);
    // Not an animation: a damaged one that still plays never stands still.
    const FileRecordPtr pBroken =
        findRecord([](const FileRecord &record) { return isDamaged(record) && record.fileType() != FileTypes::Gif; });
    addFileStep(QStringLiteral("damaged file"), pBroken, [this] { return isStill(); });
    const FileRecordPtr pAnimation =
        findRecord([](const FileRecord &record) { return record.fileType() == FileTypes::Gif && !isDamaged(record); });
    addFileStep(QStringLiteral("animated picture"), pAnimation, [this] { return isChanged(); });
    addPanelSteps(pPicture);
    addFullPreviewSteps(pPicture);
    addClosingSteps(pPicture);
}

void Tour::addPreviewSteps(const FileRecordPtr &pPicture)
{
    const int nRow = m_pSession->model().rowOf(pPicture->fileId());
    const int nFirst = qMax(0, nRow - 2);
    const FileRecordPtr pFirst = m_pSession->model().recordAt(nFirst);
    m_steps.push_back({QStringLiteral("select a file"), [this, pFirst] { selectByMouse(pFirst); },
                       [this, pFirst] {
                           return m_pSession->window()->grid()->currentFileId() == pFirst->fileId() && isStill();
                       }});
    m_steps.push_back({QStringLiteral("quick preview (Space)"), [this] { pressKey(Qt::Key_Space); },
                       [this, pFirst] {
                           return isShown(pFirst) && isStill();
                       }});
    for (int i = nFirst + 1; i <= nRow; ++i) {
        const FileRecordPtr pNext = m_pSession->model().recordAt(i);
        m_steps.push_back({QStringLiteral("next file (Right)"), [this] { pressKey(Qt::Key_Right); },
                           [this, pNext] {
                               return isShown(pNext) && isStill();
                           }});
    }
    const auto changedAndStill = [this] {
        return isChanged() && isStill();
    };
    m_steps.push_back({QStringLiteral("zoom in (+)"), [this] { pressKey(Qt::Key_Plus); }, changedAndStill});
    m_steps.push_back({QStringLiteral("zoom in (wheel)"), [this] { turnWheel(); }, changedAndStill});
    m_steps.push_back({QStringLiteral("actual size (1)"), [this] { pressKey(Qt::Key_1); },
                       [this] {
                           return isStill();
                       }});
    m_steps.push_back({QStringLiteral("fit to width (W)"), [this] { pressKey(Qt::Key_W); },
                       [this] {
                           return isStill();
                       }});
    m_steps.push_back({QStringLiteral("fit to window (F)"), [this] { pressKey(Qt::Key_F); },
                       [this] {
                           return isStill();
                       }});
    for (const auto &tool :
         {qMakePair(QStringLiteral("rotate"), RotateButton), qMakePair(QStringLiteral("flip"), FlipButton)})
        m_steps.push_back({tool.first,
                           [this, nButton = tool.second] {
                               if (QAbstractButton *pButton = toolButton(nButton))
                                   QTest::mouseClick(pButton, Qt::LeftButton);
                           },
                           changedAndStill});
    // Both keys come before the load can report back, so the preview has to ask for patience.
    const bool bLast = nRow + 1 >= m_pSession->model().rowCount();
    m_steps.push_back({QStringLiteral("leaving while a file loads (Escape)"),
                       [this, bLast] {
                           pressKey(bLast ? Qt::Key_Left : Qt::Key_Right);
                           pressKey(Qt::Key_Escape);
                       },
                       [this] {
                           return childOfClass("CNotificationFloatingWidget") != nullptr;
                       }});
    m_steps.push_back({QStringLiteral("back to the grid (Escape)"), [] {},
                       [this] {
                           // The notice stays a while; the load ends sooner.
                           if (preview() != nullptr && hub()->currentIndex() == k_nPicturePage && isStill())
                               pressKey(Qt::Key_Escape);
                           return preview() == nullptr && m_pSession->window()->isActiveWindow() && isStill();
                       }});
}

void Tour::addFileStep(const QString &name, const FileRecordPtr &pRecord, const std::function<bool()> &done)
{
    if (pRecord == nullptr) {
        say(QStringLiteral("-- left out: %1 (no such file in this folder)").arg(name));
        return;
    }
    m_steps.push_back({QString(), [this, pRecord] { selectByMouse(pRecord); },
                       [this, pRecord] {
                           return m_pSession->window()->grid()->currentFileId() == pRecord->fileId();
                       }});
    m_steps.push_back({QString(), [this] { pressKey(Qt::Key_Space); },
                       [this, pRecord] {
                           return isShown(pRecord);
                       }});
    m_steps.push_back({name, [] {}, done});
    m_steps.push_back({QString(), [this] { pressKey(Qt::Key_Escape); },
                       [this] {
                           if (preview() != nullptr && hub()->currentIndex() == k_nPicturePage)
                               pressKey(Qt::Key_Escape);
                           return preview() == nullptr && m_pSession->window()->isActiveWindow();
                       }});
}

void Tour::addPanelSteps(const FileRecordPtr &pPicture)
{
    const qint64 nId = pPicture->fileId();
    const auto hasLabels = [this, nId](int nLabels) {
        return m_pSession->library()->record(nId)->tags().size() >= nLabels && isStill();
    };
    m_steps.push_back({QString(), [this, pPicture] { selectByMouse(pPicture); },
                       [this, nId] {
                           return m_pSession->window()->grid()->currentFileId() == nId && isStill();
                       }});
    m_steps.push_back({QStringLiteral("labels in the information panel"),
                       [this] {
                           type("hostLabelInput", QStringLiteral("Holiday\n"));
                           type("hostLabelInput", QStringLiteral("Landscape\n"));
                       },
                       [hasLabels] {
                           return hasLabels(2);
                       }});
    m_steps.push_back({QStringLiteral("search"), [this] { type("hostSearch", QStringLiteral("holiday")); },
                       [this] {
                           return m_pSession->model().rowCount() == 1 && isStill();
                       }});
    m_steps.push_back({QString(), [this] { pressKey(Qt::Key_Escape); },
                       [this] {
                           return m_pSession->model().rowCount() > 1 && m_pSession->window()->grid()->hasFocus();
                       }});
}

void Tour::addFullPreviewSteps(const FileRecordPtr &pPicture)
{
    m_steps.push_back({QString(), [this, pPicture] { selectByMouse(pPicture); },
                       [this, pPicture] {
                           return m_pSession->window()->grid()->currentFileId() == pPicture->fileId() && isStill();
                       }});
    m_steps.push_back({QStringLiteral("full preview (Enter)"), [this] { pressKey(Qt::Key_Return); },
                       [this, pPicture] {
                           return isShown(pPicture) && isStill();
                       }});
    m_steps.push_back({QStringLiteral("columns folded (Tab)"), [this] { pressKey(Qt::Key_Tab); },
                       [this] {
                           return isStill();
                       }});
    m_steps.push_back({QString(), [this] { pressKey(Qt::Key_Tab); },
                       [this] {
                           return isStill();
                       }});
    m_steps.push_back({QStringLiteral("full preview in the other theme"), [this] { m_pSession->toggleTheme(); },
                       [this] {
                           return isChanged() && isStill();
                       }});
    m_steps.push_back({QString(), [this] { m_pSession->toggleTheme(); },
                       [this] {
                           return isChanged() && isStill();
                       }});
    m_steps.push_back({QStringLiteral("back to the grid from the full preview (Escape)"),
                       [this] { pressKey(Qt::Key_Escape); },
                       [this] {
                           return preview() == nullptr && m_pSession->window()->grid()->hasFocus() && isStill();
                       }});
}

void Tour::addClosingSteps(const FileRecordPtr &pPicture)
{
    m_steps.push_back({QStringLiteral("the other theme"),
                       [this] {
                           auto *pButton =
                               m_pSession->window()->findChild<QAbstractButton *>(QStringLiteral("hostThemeButton"));
                           QTest::mouseClick(pButton, Qt::LeftButton);
                       },
                       [this] {
                           return isChanged() && isStill();
                       }});
    addFileStep(QStringLiteral("quick preview in the other theme"), pPicture, [this] { return isStill(); });
    m_steps.push_back({QString(), [this] { m_pSession->toggleTheme(); },
                       [] {
                           return true;
                       }});
}

void Tour::next()
{
    m_stepTime.start();
    m_nStillPolls = 0;
    m_before = screen();
    m_lastScreen = QImage();
    // Steps may add further ones, which moves them in memory.
    const std::function<void()> act = m_steps.at(m_nStep).act;
    act();
}

void Tour::check()
{
    // A display without a window manager gives the focus to nobody by itself.
    QWidget *pFront = preview() != nullptr ? preview()->window() : m_pSession->window();
    if (!pFront->isActiveWindow())
        pFront->activateWindow();

    const QImage now = screen();
    m_nStillPolls = now == m_lastScreen ? m_nStillPolls + 1 : 0;
    m_lastScreen = now;
    const Step step = m_steps.at(m_nStep);
    if (!step.done()) {
        if (m_stepTime.elapsed() > k_nStepTimeoutMsec)
            finish(EXIT_FAILURE, QStringLiteral("never came true: %1")
                                     .arg(step.name.isEmpty() ? QStringLiteral("between two steps") : step.name));
        return;
    }
    if (!step.name.isEmpty()) {
        ++m_nPictures;
        const QString file = QStringLiteral("%1.png").arg(m_nPictures, 2, 10, QLatin1Char('0'));
        if (!now.save(QDir(m_folder).filePath(file))) {
            finish(EXIT_FAILURE, QStringLiteral("%1 cannot be written").arg(QDir(m_folder).filePath(file)));
            return;
        }
        say(QStringLiteral("%1  %2").arg(file, step.name));
    }
    ++m_nStep;
    if (m_nStep < m_steps.size())
        next();
    else
        finish(EXIT_SUCCESS, QString());
}

void Tour::finish(int nExitCode, const QString &message)
{
    m_poll.stop();
    if (nExitCode != EXIT_SUCCESS) {
        QTextStream(stderr) << QStringLiteral("The tour failed: ") << message << QLatin1Char('\n');
        screen().save(QDir(m_folder).filePath(QStringLiteral("failed.png")));
    }
    // Queued, because a tour that fails at its start fails before the event loop runs.
    QTimer::singleShot(0, qApp, [nExitCode] { QCoreApplication::exit(nExitCode); });
}

QWidget *Tour::preview() const
{
    QWidget *pDialog = m_pSession->previews()->dialog();
    return pDialog != nullptr && pDialog->isVisible() ? pDialog : nullptr;
}

QWidget *Tour::childOfClass(const char *className) const
{
    const QList<QWidget *> children = preview() != nullptr ? preview()->findChildren<QWidget *>() : QList<QWidget *>();
    for (QWidget *pChild : children) {
        if (pChild->inherits(className) && pChild->isVisible())
            return pChild;
    }
    return nullptr;
}

QStackedWidget *Tour::hub() const
{
    return qobject_cast<QStackedWidget *>(childOfClass("MiddleResourcePreviewWidget"));
}

QAbstractButton *Tour::toolButton(int nButton) const
{
    int nFound = 0;
    // Each kind of page has a bar of its own.
    const QList<QWidget *> bars = preview()->findChildren<QWidget *>(QStringLiteral("previewToolBar"));
    for (const QWidget *pBar : bars) {
        const QList<QAbstractButton *> buttons =
            pBar->isVisible() ? pBar->findChildren<QAbstractButton *>() : QList<QAbstractButton *>();
        for (QAbstractButton *pButton : buttons) {
            if (pButton->inherits("CircleBtn") && nFound++ == nButton)
                return pButton;
        }
    }
    return nullptr;
}

bool Tour::isShown(const FileRecordPtr &pRecord) const
{
    const bool bCurrent = m_pSession->window()->grid()->currentFileId() == pRecord->fileId();
    return bCurrent && preview() != nullptr && preview()->isActiveWindow() && hub() != nullptr &&
           hub()->currentIndex() == k_nPicturePage;
}

bool Tour::isStill() const
{
    return m_nStillPolls >= k_nStillPolls;
}

bool Tour::isChanged() const
{
    return m_lastScreen != m_before;
}

QImage Tour::screen() const
{
    QPixmap picture = m_pSession->window()->grab();
    if (preview() != nullptr && preview()->isWindow()) {
        // The veil is translucent; without a compositor the screen itself would show it black.
        QPainter painter(&picture);
        const QPoint offset = preview()->mapToGlobal(QPoint()) - m_pSession->window()->mapToGlobal(QPoint());
        painter.drawPixmap(offset, preview()->grab());
    }
    return picture.toImage();
}

void Tour::pressKey(int nKey) const
{
    QWidget *pWindow = preview() != nullptr ? preview()->window() : m_pSession->window();
    QWidget *pFocus = QApplication::focusWidget();
    const bool bInside = pFocus != nullptr && pFocus->window() == pWindow;
    QTest::keyClick(bInside ? pFocus : pWindow, Qt::Key(nKey));
}

void Tour::selectByMouse(const FileRecordPtr &pRecord) const
{
    FileGridView *pGrid = m_pSession->window()->grid();
    const QModelIndex index = m_pSession->model().index(m_pSession->model().rowOf(pRecord->fileId()));
    pGrid->scrollTo(index);
    QTest::mouseClick(pGrid->viewport(), Qt::LeftButton, Qt::NoModifier, pGrid->visualRect(index).center());
}

void Tour::turnWheel() const
{
    constexpr int k_nNotch = 120;
    QWidget *pView = childOfClass("QGraphicsView");
    if (pView == nullptr)
        return;
    QWidget *pViewport = qobject_cast<QAbstractScrollArea *>(pView)->viewport();
    const QPointF position = pViewport->rect().center();
    QWheelEvent event(position, pViewport->mapToGlobal(position.toPoint()), QPoint(), QPoint(0, k_nNotch), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(pViewport, &event);
}

void Tour::type(const char *widgetName, const QString &text) const
{
    auto *pWidget = m_pSession->window()->findChild<QWidget *>(QLatin1String(widgetName));
    pWidget->setFocus();
    for (const QChar letter : text) {
        if (letter == QLatin1Char('\n'))
            QTest::keyClick(pWidget, Qt::Key_Return);
        else
            QTest::keyClicks(pWidget, QString(letter));
    }
}

FileRecordPtr Tour::findRecord(const std::function<bool(const FileRecord &)> &wanted) const
{
    for (int i = 0; i < m_pSession->model().rowCount(); ++i) {
        const FileRecordPtr pRecord = m_pSession->model().recordAt(i);
        if (wanted(*pRecord))
            return pRecord;
    }
    return {};
}

FileRecordPtr Tour::largestPicture() const
{
    constexpr qint64 k_nJpeg = 20;
    FileRecordPtr pLargest;
    for (int i = 0; i < m_pSession->model().rowCount(); ++i) {
        const FileRecordPtr pRecord = m_pSession->model().recordAt(i);
        const bool bJpeg = pRecord->fileType() == k_nJpeg && !isDamaged(*pRecord);
        if (bJpeg && (pLargest == nullptr || pRecord->row().nSize > pLargest->row().nSize))
            pLargest = pRecord;
    }
    return pLargest;
}
