#pragma once

#include <QString>

#include <locale.h>

/** What packs are called and where things stand in them. */
namespace PackFormat {

constexpr char k_szManifest[] = "manifest.json";
constexpr char k_szFiles[] = "files/";
constexpr char k_szPreviews[] = "previews/";

/** ".MORAYPack" */
QString suffix();

/** Whether this is the name of a pack. */
bool isPackName(const QString &path);

} // namespace PackFormat

/** Names in archives are UTF-8 whatever the user's locale is: sets this thread's locale while it lives. */
class Utf8Locale {
public:
    Utf8Locale();
    ~Utf8Locale();
    Q_DISABLE_COPY(Utf8Locale)

private:
    locale_t m_new;
    locale_t m_old;
};
