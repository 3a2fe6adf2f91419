#pragma once

#include "common/CPushButton.h"

/** A flat button of the media bars: one icon of the theme, which it follows. */
class MediaButton : public CPushButton {
    Q_OBJECT

public:
    MediaButton(const QSize &size, QWidget *pParent);

    void showIcon(const QString &iconName);
    QString iconName() const { return m_iconName; }

protected:
    bool event(QEvent *pEvent) override;

private:
    void applyIcon();

    QString m_iconName;
};
