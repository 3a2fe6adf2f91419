#pragma once

#include "interfaces/ReservedOperation.h"

#include <QObject>
#include <QSharedPointer>
#include <QtPlugin>

/** The host's data centre. The position of the operation is fixed. Thread: GUI thread only. */
class IDataCenterPlugin {
public:
    BIGIMGPREVIEW_RESERVED_OPERATION(1)
    BIGIMGPREVIEW_RESERVED_OPERATION(2)
    BIGIMGPREVIEW_RESERVED_OPERATION(3)
    BIGIMGPREVIEW_RESERVED_OPERATION(4)

    /** 5: the object behind which the host keeps its library; null while no library is open. */
    virtual QSharedPointer<QObject> dataCenter() = 0;

protected:
    ~IDataCenterPlugin() = default;
};

Q_DECLARE_INTERFACE(IDataCenterPlugin, "Tessaro.Plugin.IDataCenterPlugin/1.0")
