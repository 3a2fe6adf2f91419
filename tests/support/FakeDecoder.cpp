#include "FakeDecoder.h"

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <mutex>

struct FakeDecoder::State {
    mutable std::mutex mutex;
    QHash<QString, FakePicture> pictures;
    QString current;
    DecoderCounts counts;

    class Bitmap;
    class Document;

    template <class Change>
    void change(Change change)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        change(counts);
    }
};

class FakeDecoder::State::Bitmap final : public IDecodedBitmap {
public:
    Bitmap(const QSharedPointer<State> &state, const FakePicture &picture, const QSize &size)
        : m_state(state)
        , m_layout(picture.layout)
        , m_size(size)
    {
        const bool small = m_layout == Rgb24 || m_layout == Bgr24;
        const bool redFirst = m_layout == Rgb24 || m_layout == Rgba32;
        const char red = char(picture.colour.red());
        const char green = char(picture.colour.green());
        const char blue = char(picture.colour.blue());
        const char bytes[] = {redFirst ? red : blue, green, redFirst ? blue : red, char(picture.colour.alpha())};
        const QByteArray pixel(bytes, small ? 3 : 4);
        m_rowLength = pixel.size() * size.width();
        m_pixels = pixel.repeated(size.width() * size.height());
        if (!picture.pixels.isEmpty()) {
            m_rowLength = picture.rowLength;
            m_pixels = picture.pixels;
            m_size.setHeight(m_pixels.size() / m_rowLength);
        }
        m_state->change([](DecoderCounts &counts) { ++counts.liveBitmaps; });
    }

    const uchar *pixels() const override { return reinterpret_cast<const uchar *>(m_pixels.constData()); }
    int rowLength() const override { return m_rowLength; }
    int height() const override { return m_size.height(); }
    int pixelLayout() const override { return m_layout; }

    void release() override
    {
        m_state->change([](DecoderCounts &counts) { --counts.liveBitmaps; });
        delete this;
    }

private:
    QSharedPointer<State> m_state;
    int m_layout;
    QSize m_size;
    int m_rowLength = 0;
    QByteArray m_pixels;
};

class FakeDecoder::State::Document final : public IDecodedDocument {
public:
    Document(const QSharedPointer<State> &state, const FakePicture &picture)
        : m_state(state)
        , m_picture(picture)
    {
        m_state->change([](DecoderCounts &counts) { ++counts.liveDocuments; });
    }

    int kind() const override { return m_picture.kind; }
    bool hasImageData() const override { return m_picture.hasImageData; }
    int rotation() const override { return m_picture.rotation; }

    IDecodedBitmap *createBitmap(double fScaleX, double fScaleY) override
    {
        if (m_picture.gate)
            m_picture.gate->pass();
        const QSize size(std::max(1, qRound(m_picture.size.width() * fScaleX)),
                         std::max(1, qRound(m_picture.size.height() * fScaleY)));
        return m_picture.hasBitmap ? new Bitmap(m_state, m_picture, size) : nullptr;
    }

    void release() override
    {
        m_state->change([](DecoderCounts &counts) { --counts.liveDocuments; });
        delete this;
    }

private:
    QSharedPointer<State> m_state;
    FakePicture m_picture;
};

FakeDecoder::FakeDecoder()
    : m_state(QSharedPointer<State>::create())
{
}

FakeDecoder::~FakeDecoder()
{
    openGates();
}

void FakeDecoder::setPicture(const QString &path, const FakePicture &picture)
{
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    m_state->pictures.insert(path, picture);
}

DecoderCounts FakeDecoder::counts() const
{
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    return m_state->counts;
}

void FakeDecoder::openGates()
{
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    for (const FakePicture &picture : qAsConst(m_state->pictures)) {
        if (picture.gate)
            picture.gate->open();
    }
}

bool FakeDecoder::openFile(const QByteArray &utf8Path)
{
    const QString path = QString::fromUtf8(utf8Path);
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    DecoderCounts &counts = m_state->counts;
    ++counts.opened;
    counts.mostAtOnce = std::max(counts.mostAtOnce, counts.opened - counts.closed);
    counts.inGuiThread += QThread::currentThread() == QCoreApplication::instance()->thread() ? 1 : 0;
    counts.paths.append(path);
    m_state->current = path;
    return m_state->pictures.contains(path) && m_state->pictures.value(path).opens;
}

IDecodedDocument *FakeDecoder::takeDocument()
{
    FakePicture picture;
    {
        const std::lock_guard<std::mutex> lock(m_state->mutex);
        picture = m_state->pictures.value(m_state->current);
    }
    return picture.hasDocument ? new State::Document(m_state, picture) : nullptr;
}

void FakeDecoder::closeFile()
{
    m_state->change([](DecoderCounts &counts) { ++counts.closed; });
}
