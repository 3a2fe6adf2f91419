#include "services/mediaplayer/playback/MpvCore.h"

#include "services/mediaplayer/playback/MpvLibrary.h"
#include "services/mediaplayer/playback/PlayerThreads.h"

#include <mpv/client.h>

namespace {

constexpr quint64 kLoadReply = 1;
constexpr quint64 kPropertyReply = 2;
constexpr quint64 kFileObserver = 3;

struct Observed {
    const char *name;
    mpv_format format;
};

// Observed anew for each file: a value that happens to be the same as the last file's would not be reported.
constexpr Observed kObserved[] = {
    {"track-list", MPV_FORMAT_NODE},
    {"time-pos", MPV_FORMAT_DOUBLE},
    {"duration", MPV_FORMAT_DOUBLE},
    {"eof-reached", MPV_FORMAT_FLAG},
    {"current-ao", MPV_FORMAT_STRING},
    {"video-params/gamma", MPV_FORMAT_STRING},
    {"video-frame-info/interlaced", MPV_FORMAT_FLAG},
};

QVariant valueOf(const mpv_node &node)
{
    switch (node.format) {
    case MPV_FORMAT_STRING:
        return QString::fromUtf8(node.u.string);
    case MPV_FORMAT_FLAG:
        return node.u.flag != 0;
    case MPV_FORMAT_INT64:
        return qlonglong(node.u.int64);
    case MPV_FORMAT_DOUBLE:
        return node.u.double_;
    case MPV_FORMAT_NODE_ARRAY: {
        QVariantList list;
        for (int i = 0; i < node.u.list->num; ++i)
            list.append(valueOf(node.u.list->values[i]));
        return list;
    }
    case MPV_FORMAT_NODE_MAP: {
        QVariantMap map;
        for (int i = 0; i < node.u.list->num; ++i)
            map.insert(QString::fromUtf8(node.u.list->keys[i]), valueOf(node.u.list->values[i]));
        return map;
    }
    case MPV_FORMAT_BYTE_ARRAY:
        return QByteArray(static_cast<const char *>(node.u.ba->data), int(node.u.ba->size));
    default:
        return {};
    }
}

/** A property that has no value at present gives an invalid one. */
QVariant valueOf(const mpv_event_property &property)
{
    mpv_node node = {};
    node.format = property.format;
    switch (property.format) {
    case MPV_FORMAT_STRING:
        node.u.string = *static_cast<char **>(property.data);
        break;
    case MPV_FORMAT_FLAG:
        node.u.flag = *static_cast<int *>(property.data);
        break;
    case MPV_FORMAT_INT64:
        node.u.int64 = *static_cast<int64_t *>(property.data);
        break;
    case MPV_FORMAT_DOUBLE:
        node.u.double_ = *static_cast<double *>(property.data);
        break;
    case MPV_FORMAT_NODE:
        node = *static_cast<mpv_node *>(property.data);
        break;
    default:
        return {};
    }
    return valueOf(node);
}

mpv_node textNode(const char *pText)
{
    mpv_node node = {};
    node.format = MPV_FORMAT_STRING;
    // The core only reads it.
    node.u.string = const_cast<char *>(pText);
    return node;
}

} // namespace

MpvCore::MpvCore(PlayerThreads *pThreads, const PlayerSetup &setup, QObject *pParent)
    : QObject(pParent)
    , m_pThreads(pThreads)
    , m_pThread(pThreads->create(setup))
{
    connect(m_pThread, &PlayerThread::signalReady, this, &MpvCore::takeCore);
}

MpvCore::~MpvCore()
{
    // Returns only when no wake-up is under way in another thread.
    if (m_pCore != nullptr)
        MpvLibrary::get().set_wakeup_callback(m_pCore, nullptr, nullptr);
    m_pThread->disconnect(this);
    m_pThreads->end(m_pThread);
}

void MpvCore::takeCore()
{
    m_pCore = m_pThread->core();
    m_bBroken = m_pCore == nullptr;
    if (m_bBroken) {
        Q_EMIT signalReady();
        return;
    }
    const auto wake = [](void *pThis) {
        auto *pCore = static_cast<MpvCore *>(pThis);
        if (!pCore->m_bEventsWait.exchange(true))
            QMetaObject::invokeMethod(
                pCore, [pCore] { pCore->drainEvents(); }, Qt::QueuedConnection);
    };
    MpvLibrary::get().set_wakeup_callback(m_pCore, wake, this);
    wake(this);
    Q_EMIT signalReady();
}

void MpvCore::drainEvents()
{
    m_bEventsWait = false;
    while (m_pCore != nullptr) {
        const mpv_event *pEvent = MpvLibrary::get().wait_event(m_pCore, 0);
        if (pEvent->event_id == MPV_EVENT_NONE)
            return;
        handleEvent(*pEvent);
    }
}

void MpvCore::handleEvent(const mpv_event &event)
{
    switch (event.event_id) {
    case MPV_EVENT_FILE_LOADED:
        MpvLibrary::get().unobserve_property(m_pCore, kFileObserver);
        for (const Observed &observed : kObserved)
            MpvLibrary::get().observe_property(m_pCore, kFileObserver, observed.name, observed.format);
        Q_EMIT signalFileLoaded();
        break;
    case MPV_EVENT_VIDEO_RECONFIG:
        MpvLibrary::get().get_property_async(m_pCore, kPropertyReply, "dwidth", MPV_FORMAT_INT64);
        MpvLibrary::get().get_property_async(m_pCore, kPropertyReply, "dheight", MPV_FORMAT_INT64);
        break;
    case MPV_EVENT_END_FILE: {
        const auto *pEnd = static_cast<const mpv_event_end_file *>(event.data);
        Q_EMIT signalFileEnded(pEnd->reason == MPV_END_FILE_REASON_ERROR);
        break;
    }
    case MPV_EVENT_COMMAND_REPLY:
        if (event.reply_userdata == kLoadReply && event.error < 0)
            Q_EMIT signalFileEnded(true);
        break;
    case MPV_EVENT_GET_PROPERTY_REPLY:
        if (event.error < 0)
            break;
        [[fallthrough]];
    case MPV_EVENT_PROPERTY_CHANGE: {
        const auto *pProperty = static_cast<const mpv_event_property *>(event.data);
        Q_EMIT signalProperty(pProperty->name, valueOf(*pProperty));
        break;
    }
    default:
        break;
    }
}

void MpvCore::load(const QByteArray &native, const QVector<QPair<QByteArray, QByteArray>> &options)
{
    if (m_pCore == nullptr)
        return;
    QVector<char *> names;
    QVector<mpv_node> values;
    for (const auto &option : options) {
        names.append(const_cast<char *>(option.first.constData()));
        values.append(textNode(option.second.constData()));
    }
    mpv_node_list optionList = {values.size(), values.data(), names.data()};
    mpv_node arguments[4] = {textNode("loadfile"), textNode(native.constData()), textNode("replace"), {}};
    arguments[3].format = MPV_FORMAT_NODE_MAP;
    arguments[3].u.list = &optionList;
    mpv_node_list list = {4, arguments, nullptr};
    mpv_node command = {};
    command.format = MPV_FORMAT_NODE_ARRAY;
    command.u.list = &list;
    MpvLibrary::get().command_node_async(m_pCore, kLoadReply, &command);
}

void MpvCore::command(const QVector<QByteArray> &arguments)
{
    if (m_pCore == nullptr)
        return;
    QVector<const char *> texts;
    for (const QByteArray &argument : arguments)
        texts.append(argument.constData());
    texts.append(nullptr);
    MpvLibrary::get().command_async(m_pCore, 0, texts.data());
}

void MpvCore::set(const char *pName, bool bValue)
{
    int nFlag = bValue ? 1 : 0;
    if (m_pCore != nullptr)
        MpvLibrary::get().set_property_async(m_pCore, 0, pName, MPV_FORMAT_FLAG, &nFlag);
}

void MpvCore::set(const char *pName, double fValue)
{
    if (m_pCore != nullptr)
        MpvLibrary::get().set_property_async(m_pCore, 0, pName, MPV_FORMAT_DOUBLE, &fValue);
}

void MpvCore::set(const char *pName, const QByteArray &value)
{
    const char *pText = value.constData();
    if (m_pCore != nullptr)
        MpvLibrary::get().set_property_async(m_pCore, 0, pName, MPV_FORMAT_STRING, &pText);
}

QImage MpvCore::screenshot()
{
    if (m_pCore == nullptr)
        return {};
    mpv_node arguments[2] = {textNode("screenshot-raw"), textNode("video")};
    mpv_node_list list = {2, arguments, nullptr};
    mpv_node command = {};
    command.format = MPV_FORMAT_NODE_ARRAY;
    command.u.list = &list;
    mpv_node answer = {};
    if (MpvLibrary::get().command_node(m_pCore, &command, &answer) < 0)
        return {};
    const QVariantMap map = valueOf(answer).toMap();
    MpvLibrary::get().free_node_contents(&answer);
    const QByteArray data = map.value(QStringLiteral("data")).toByteArray();
    const int nWidth = map.value(QStringLiteral("w")).toInt();
    const int nHeight = map.value(QStringLiteral("h")).toInt();
    const int nStride = map.value(QStringLiteral("stride")).toInt();
    if (nWidth <= 0 || nHeight <= 0 || nStride < nWidth * 4 || data.size() < qint64(nStride) * nHeight)
        return {};
    const auto *pPixels = reinterpret_cast<const uchar *>(data.constData());
    QImage image = QImage(pPixels, nWidth, nHeight, nStride, QImage::Format_ARGB32).copy();
    // The fourth byte is left to chance.
    image.reinterpretAsFormat(QImage::Format_RGB32);
    return image.convertToFormat(QImage::Format_RGB888);
}
