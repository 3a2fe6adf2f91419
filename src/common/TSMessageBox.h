#pragma once

#include <QDialog>
#include <QString>

#include <memory>

namespace Ui {
class TSMessageBox;
}

/**
 * A themed question or notice. Filled, connected and shown without waiting: the answer comes as a signal, and the box
 * deletes itself when it is closed. Never reused.
 *
 * Owner: the window of the widget that asks, until the box is closed. Thread: GUI thread; another thread asks by
 * emitting signExecInThread, connected to slotExecInThread with a queued connection.
 */
class TSMessageBox : public QDialog {
    Q_OBJECT

public:
    enum Mode : qint32 {
        OkMode = 0,          ///< One button.
        YesNoMode = 1,       ///< Two buttons; the close cross means no.
        ThreeButtonMode = 2, ///< All three.
        YesNoQuietMode = 3   ///< Two buttons; the close cross means nothing.
    };
    Q_ENUM(Mode)

    enum ReturnValue : qint32 { OkValue = 0, YesValue = 1, NoValue = 2, NoneValue = 3 };
    Q_ENUM(ReturnValue)

    explicit TSMessageBox(QWidget *pParent);
    ~TSMessageBox() override;

    /** Fills the box; sets the buttons back to their own texts. A number that is no mode leaves the buttons alone. */
    void setMessage(Mode mode, const QString &title, const QString &text, QWidget *pWidget);

    /** Texts of the buttons, to be given after the message; empty ones for buttons that the mode hides. */
    void setButtonTexts(const QString &confirmText, const QString &cancelText, const QString &okText);

    /** Opens the box over its parent's window and returns at once. */
    void showModal();

Q_SIGNALS:
    void signExecInThread(TSMessageBox::Mode mode, QString title, QString text, QWidget *widget);
    /** A button was pressed and the box has been closed. */
    void signalResult(TSMessageBox::ReturnValue value);

public Q_SLOTS:
    void on_confirm_btn_clicked();
    void on_ok_btn_clicked();
    void on_cancel_btn_clicked();
    void on_btn_close_clicked();
    void slotExecInThread(TSMessageBox::Mode mode, QString title, QString text, QWidget *widget);

protected:
    void closeEvent(QCloseEvent *pEvent) override;
    void hideEvent(QHideEvent *pEvent) override;
    void paintEvent(QPaintEvent *pEvent) override;

private:
    void placeChildren();
    void placeButtons();
    void applyStyleSheets();
    void applyMode(Mode mode);
    void answer(ReturnValue value);
    void endRunning() { m_bRunning = false; }

    std::unique_ptr<Ui::TSMessageBox> m_ui;
    ReturnValue m_result = NoneValue;
    Mode m_mode = OkMode;
    bool m_bRunning = false;
    static bool s_bAnyRunning;
};
