#pragma once

#include "ImageWidgetTest.h"
#include "image/CNoteInputWidget.h"
#include "image/CNoteWidget.h"

#include <QTextEdit>

constexpr quint32 Orange = 0x0064FA;

inline NoteRecord makeNote(const QRect &rect, const char *pText = "note", quint32 nValue = Orange)
{
    return {rect, nValue, QString::fromUtf8(pText)};
}

/** "first|second" */
inline QString textsOf(const QVector<NoteRecord> &notes)
{
    QStringList texts;
    for (const NoteRecord &note : notes)
        texts.append(note.text);
    return texts.join(QLatin1Char('|'));
}

/** Base of the tests of notes: the comment mode of the picture widget against a host that stores notes. */
class NotesTest : public ImageWidgetTest {
protected:
    void init() override
    {
        ImageWidgetTest::init();
        host().desk.storeNotes = [this](qint64 nId, const QVector<NoteRecord> &notes) {
            m_stored[nId] = notes;
        };
    }
    void cleanup() override
    {
        m_pWidget.reset(); // may store what is being written
        host().desk.storeNotes = {};
        m_stored.clear();
        ImageWidgetTest::cleanup();
    }

    /** What the host gives out now: its records are pictures of the moment. */
    void refreshRecord(qint64 nId)
    {
        const auto pFile = host().addFile(nId, Png, QStringLiteral("/%1.png").arg(nId));
        pFile->noteList = m_stored.value(nId);
    }
    void load(qint64 nId, bool bReadable = true)
    {
        FakePicture picture;
        picture.size = QSize(1600, 1000);
        picture.opens = bReadable;
        host().decoder.setPicture(QStringLiteral("/%1.png").arg(nId), picture);
        for (const qint64 nFile : {1, 2})
            refreshRecord(nFile);
        openFiles({1, 2}, nId);
        showCurrent();
    }
    void showCurrent()
    {
        m_pWidget->clearPreview();
        m_pWidget->loadImage(data()->currentFilePath(), 0, 1, 1.0, 0);
        finishWorkers();
        m_pWidget->showLoaded();
    }
    void comment(qint64 nId = 1)
    {
        load(nId);
        m_pWidget->slot_EditBtnClicked();
    }
    /** Those of the widget, and o: wheel, d: drag, s: another size, c: comment mode. */
    void command(char c)
    {
        const QPoint overNotes(350, 270);
        if (c == 'o')
            turnWheel(overlay()->isVisible() ? static_cast<QWidget *>(overlay()) : view()->viewport(), overNotes);
        else if (c == 'd')
            drag(QPoint(400, 300), QPoint(430, 280), Qt::MiddleButton);
        else if (c == 's')
            m_pWidget->resize(m_pWidget->size() == ViewSize ? QSize(701, 533) : ViewSize);
        else if (c == 'c')
            m_pWidget->slot_EditBtnClicked();
        else
            ImageWidgetTest::command(c);
        settle();
    }
    void drag(const QPoint &from, const QPoint &to, Qt::MouseButton button = Qt::LeftButton)
    {
        ::drag(overlay(), from, to, button);
    }
    /** Whether the key is this widget's own, and no command of the preview. */
    static bool takesKey(QWidget *pWidget, Qt::Key key)
    {
        QKeyEvent event(QEvent::ShortcutOverride, key, Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(pWidget, &event);
        return event.isAccepted();
    }
    void write(const QString &text) { textBox()->insertPlainText(text); }
    void pressSave() { QTest::keyClick(textBox(), Qt::Key_Return, Qt::ControlModifier); }
    void save(const QString &text)
    {
        write(text);
        pressSave();
    }
    void makeNew(const QPoint &from, const QPoint &to, const QString &text)
    {
        drag(from, to);
        save(text);
    }
    void clickOn(int nNote) { drag(regionRect(nNote).center(), regionRect(nNote).center()); }
    void rewrite(int nNote) { QTest::mouseDClick(overlay(), Qt::LeftButton, {}, overlay()->badgeRect(nNote).center()); }

    CNoteWidget *overlay() const { return m_pWidget->findChild<CNoteWidget *>(); }
    CNoteInputWidget *card() const { return overlay()->card(); }
    QTextEdit *textBox() const { return card()->findChild<QTextEdit *>(); }
    QRect regionRect(int n = 0) const { return overlay()->region(n)->rect; }
    int requests() { return host().desk.of(ActionKind::Comment).size(); }
    /** Where a point of the picture lies on the screen, by way of the scene alone. */
    QPoint onScreen(double fX, double fY) const
    {
        const double fRatio = m_pWidget->devicePixelRatioF();
        return view()->mapFromScene(item()->mapToScene(item()->boundingRect().topLeft() + QPointF(fX, fY) / fRatio));
    }
    QRect onScreen(const QRect &rect) const
    {
        return NoteGeometry::normalised(onScreen(rect.left(), rect.top()),
                                        onScreen(rect.left() + rect.width(), rect.top() + rect.height()));
    }

    QMap<qint64, QVector<NoteRecord>> m_stored;
};
