#include "actions/PackArchive.h"

QString PackFormat::suffix()
{
    return QStringLiteral(".MORAYPack");
}

bool PackFormat::isPackName(const QString &path)
{
    return path.endsWith(suffix(), Qt::CaseInsensitive);
}

Utf8Locale::Utf8Locale()
    : m_new(::newlocale(LC_ALL_MASK, "C.UTF-8", nullptr))
    , m_old(m_new != nullptr ? ::uselocale(m_new) : nullptr)
{
}

Utf8Locale::~Utf8Locale()
{
    if (m_new == nullptr)
        return;
    ::uselocale(m_old);
    ::freelocale(m_new);
}
