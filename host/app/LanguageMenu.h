#pragma once

#include <QMenu>

class QActionGroup;

/**
 * The choice of a language: each is named in itself, so that whoever cannot read the present one finds the way back.
 *
 * Owner: TitleBar. Thread: GUI thread only.
 */
class LanguageMenu : public QMenu {
    Q_OBJECT

public:
    explicit LanguageMenu(QWidget *pParent);

    void setChosen(const QString &code);

Q_SIGNALS:
    /** By the user; the code is one of HostLanguage. */
    void signalChosen(const QString &code);

private:
    QActionGroup *m_pGroup;
};
