#pragma once

#include "common/CPopupDialog.h"

#include <QPointer>

class QLabel;
class QProgressBar;

/**
 * Stands over a preview while the host works: a title, a thin bar, a line of text. Its close cross asks for
 * cancellation and says so; only its owner closes it.
 *
 * Owner: the preview widget, until closed.
 */
class TsProgressDialog : public CPopupDialog {
    Q_OBJECT

public:
    explicit TsProgressDialog(QWidget *pParent);
    ~TsProgressDialog() override;

    /** To be called once, after construction. */
    void setTitle(const QString &text);
    void setStatusText(const QString &text);
    /** 0 to 100. */
    void setValue(int nValue);

Q_SIGNALS:
    /** The user asked to cancel; emitted once. */
    void userCancle();

public Q_SLOTS:
    void slotCloseBtnClicked(bool val) override;

protected:
    void keyPressEvent(QKeyEvent *pEvent) override;
    void closeEvent(QCloseEvent *pEvent) override;

private:
    void buildChildren();
    void applyTheme();

    QPointer<QLabel> m_pTitleLabel;
    QPointer<QLabel> m_pStatusLabel;
    QPointer<QProgressBar> m_pProgressBar;
    bool m_bCanceling = false;
};
