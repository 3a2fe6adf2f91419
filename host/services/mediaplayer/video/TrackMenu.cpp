#include "services/mediaplayer/video/TrackMenu.h"

#include "services/mediaplayer/playback/MpvPlayer.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QHash>
#include <QLocale>

namespace {

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(TrackMenu)
};

QHash<QString, QString> shortLanguageCodes()
{
    const char *const pairs = "ara:ar ben:bn bul:bg cat:ca ces:cs chi:zh cze:cs dan:da deu:de dut:nl ell:el eng:en "
                              "est:et fas:fa fin:fi fra:fr "
                              "fre:fr ger:de gre:el heb:he hin:hi hrv:hr hun:hu ind:id isl:is ita:it jpn:ja kor:ko "
                              "lav:lv lit:lt nld:nl nor:no "
                              "per:fa pol:pl por:pt ron:ro rum:ro rus:ru slk:sk slo:sk slv:sl spa:es srp:sr swe:sv "
                              "tha:th tur:tr ukr:uk vie:vi "
                              "zho:zh";
    QHash<QString, QString> codes;
    const QStringList list = QString::fromLatin1(pairs).split(QLatin1Char(' '));
    for (const QString &pair : list)
        codes.insert(pair.section(QLatin1Char(':'), 0, 0), pair.section(QLatin1Char(':'), 1));
    return codes;
}

QString languageName(const QString &code)
{
    // Files write two or three letters, with a region or without; Qt knows two.
    static const QHash<QString, QString> shortCodes = shortLanguageCodes();
    const QString plain = QString(code).replace(QLatin1Char('-'), QLatin1Char('_'));
    const QLocale locale(shortCodes.value(plain.toLower(), plain));
    return locale.language() == QLocale::C ? code : locale.nativeLanguageName();
}

QString trackName(const QVariantMap &track, int nNumber)
{
    QStringList parts;
    const QString language = track.value(QStringLiteral("lang")).toString();
    if (!language.isEmpty())
        parts.append(languageName(language));
    parts.append(track.value(QStringLiteral("title")).toString());
    parts.removeAll(QString());
    if (parts.isEmpty())
        return Words::tr("Track %1").arg(nNumber);
    return parts.join(QStringLiteral(" – ")).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

QVariantList tracksOf(const MpvPlayer &player, const QString &type)
{
    QVariantList result;
    for (const QVariant &track : player.tracks()) {
        if (track.toMap().value(QStringLiteral("type")).toString() == type)
            result.append(track);
    }
    return result;
}

void addChoice(QMenu *pMenu, QActionGroup *pGroup, const QString &text, qint64 nId, bool bChosen)
{
    QAction *pAction = pMenu->addAction(text);
    pAction->setCheckable(true);
    pAction->setChecked(bChosen);
    pAction->setData(nId);
    pGroup->addAction(pAction);
}

void addTracks(QMenu *pMenu, MpvPlayer *pPlayer, const QString &type, const QVariantList &tracks, const QString &none)
{
    auto *pGroup = new QActionGroup(pMenu);
    bool bAny = false;
    for (const QVariant &track : tracks)
        bAny = bAny || track.toMap().value(QStringLiteral("selected")).toBool();
    if (!none.isEmpty())
        addChoice(pMenu, pGroup, none, 0, !bAny);
    int nNumber = 0;
    for (const QVariant &track : tracks) {
        const QVariantMap map = track.toMap();
        addChoice(pMenu, pGroup, trackName(map, ++nNumber), map.value(QStringLiteral("id")).toLongLong(),
                  map.value(QStringLiteral("selected")).toBool());
    }
    QObject::connect(pGroup, &QActionGroup::triggered, pPlayer,
                     [pPlayer, type](QAction *pAction) { pPlayer->selectTrack(type, pAction->data().toLongLong()); });
}

} // namespace

QMenu *TrackMenu::create(MpvPlayer *pPlayer, QWidget *pParent)
{
    const QVariantList subtitles = tracksOf(*pPlayer, QStringLiteral("sub"));
    const QVariantList sounds = tracksOf(*pPlayer, QStringLiteral("audio"));
    if (subtitles.isEmpty() && sounds.size() < 2)
        return nullptr;
    auto *pMenu = new QMenu(pParent);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    if (!subtitles.isEmpty())
        addTracks(pMenu->addMenu(Words::tr("Subtitles")), pPlayer, QStringLiteral("sub"), subtitles, Words::tr("None"));
    if (sounds.size() > 1)
        addTracks(pMenu->addMenu(Words::tr("Sound Track")), pPlayer, QStringLiteral("audio"), sounds, QString());
    return pMenu;
}
