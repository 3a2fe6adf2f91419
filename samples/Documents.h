#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

/** Office documents made from nothing, for samples, tests and benchmarks. False where one cannot be written. */
namespace documents {

/** A presentation: every slide is coloured on its left half and says its number on the right. */
struct Deck {
    int nSlides = 5;
    QSize pixels = QSize(1280, 720); ///< At 96 dots per inch.
    QByteArray linkedPicture;        ///< An address that every slide takes a picture from.
    qint64 nZeroBytes = 0;           ///< Of a part that nothing refers to.
    int nShapes = 0;                 ///< Further shapes on each slide: work for whoever draws them.
};

bool writeDeck(const QString &path, const Deck &deck);

/** The colour of a slide's left half. */
quint32 slideColor(int nSlide);

/** An OpenDocument presentation whose macro, run when it is opened, makes this file. */
bool writeMacroDeck(const QString &path, const QString &madeFile);

bool writeText(const QString &path, int nPages);
bool writeTable(const QString &path, int nRows);
QByteArray drawing();

/** The container of a document that is locked with a password. */
QByteArray lockedPackage();

} // namespace documents

/** The samples, good ones and those that are only there to be survived, into these folders. */
bool makeDocuments(const QString &folder, const QString &nastyFolder);
