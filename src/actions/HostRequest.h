#pragma once

#include "interfaces/data/IResponseInfo.h"

#include <QObject>
#include <QSharedPointer>
#include <QVector>

#include <functional>

/**
 * One asynchronous request to the host at a time, from the request to its result. A new one takes the place of the old
 * one, of which nothing is heard any more. Sorts out what a host may send: results before the request has returned its
 * id, of other ids, twice, or never; an action object that dies.
 *
 * Owner: the file action controller. Thread: GUI thread.
 */
class HostRequest : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    ~HostRequest() override;

    /** Keeps a fresh action object, whose result signal and, where it has one, progress signal are listened to. */
    template <class Action, class Result>
    void take(const QSharedPointer<Action> &pAction, Result pResultSignal)
    {
        release();
        m_pAction = pAction;
        Action *const pRaw = pAction.data();
        m_cancel = [pRaw](qint64 nActionId) {
            pRaw->requestCancel(nActionId);
        };
        const quint64 nSerial = m_nSerial;
        connect(pRaw, pResultSignal, this, [this, nSerial](qint64 nActionId, const ResponseInfoPtr &pInfo) {
            if (nSerial == m_nSerial)
                receive(nActionId, pInfo);
        });
        connect(pRaw, &QObject::destroyed, this, [this, nSerial] {
            if (nSerial == m_nSerial)
                lose();
        });
    }
    template <class Action, class Progress>
    void watchProgress(const Action *pAction, Progress pProgressSignal)
    {
        const quint64 nSerial = m_nSerial;
        connect(pAction, pProgressSignal, this,
                [this, nSerial](qint64 nActionId, double fProgress, int nTotal, int nAlready) {
                    if (nSerial == m_nSerial && isRunning() && nActionId == m_nActionId)
                        Q_EMIT signal_progress(fProgress, nTotal, nAlready);
                });
    }

    enum Sent {
        Accepted,
        Refused,
        Superseded ///< Meanwhile another request took its place, or this object died: nothing is left to be done.
    };
    /** Sends the request for which the action object was taken. */
    Sent send(const std::function<qint64()> &request);
    /** True when the result came before the request returned: deliverEarlyResult hands it out. */
    bool hasEarlyResult() const;
    void deliverEarlyResult();
    /** Asks the host to stop what it is doing for this request; its result still comes. */
    void cancel();
    /** Lets go of the action object and hears of it no more. */
    void release();
    bool isRunning() const { return m_nActionId > 0; }

Q_SIGNALS:
    void signal_progress(double fProgress, int nTotal, int nAlready);
    /** The result of the request that is kept; null when the host gave none. */
    void signal_result(const ResponseInfoPtr &pInfo);
    /** The action object is gone, and with it every answer. */
    void signal_lost();

private:
    struct Result {
        qint64 nActionId;
        ResponseInfoPtr pInfo;
    };

    void receive(qint64 nActionId, const ResponseInfoPtr &pInfo);
    void lose();

    quint64 m_nSerial = 0; ///< Tells the signals of this request from those of an earlier one.
    qint64 m_nActionId = -1;
    QSharedPointer<QObject> m_pAction;
    std::function<void(qint64)> m_cancel;
    bool m_bSending = false;
    QVector<Result> m_earlyResults;
};
