// SPDX-License-Identifier: MIT
#ifndef SEGMENTTESTING_H
#define SEGMENTTESTING_H

#include "outlinetesting.h"

#include <QByteArray>
#include <QObject>
#include <QVector>

/** One real of a segment kind, as documents know it. */
struct TestedCoordinate
{
    char letter; ///< the name of its element
    qint16 rule; ///< the base it has before anything is read
    bool moves; ///< whether transforms and translations reach it
    KpReal& (*real)(KpPathSeg&);
};

/** What a segment kind promises; the tests of all kinds are the same but for this. */
struct TestedKind
{
    char const* name; ///< of its element
    KpPathSeg::SegType type;
    QVector<TestedCoordinate> coordinates; ///< in document order
    bool domTakesFirst; ///< of repeated coordinates; else the DOM reads all in turn
    bool readsNull; ///< the result of reading a null DOM element
    KpPathSeg* (*create)(KpPathSegList* owner); ///< a segment at the origin from plain points
};

/**
 * The tests that every segment kind must pass: the program of each kind derives from this
 * class, says what the kind is, and adds what is its own.
 */
class SegmentTest : public QObject
{
    Q_OBJECT

protected:
    explicit SegmentTest(TestedKind const& testedKind);

    /** A segment at the origin without an owner. */
    std::unique_ptr<KpPathSeg> create() const;
    /** A segment whose reals are absolute with the values 1, 2, ... in document order. */
    std::unique_ptr<KpPathSeg> counting() const;
    /** A segment whose reals are all `real`. */
    std::unique_ptr<KpPathSeg> filledWith(KpReal const& real) const;
    KpReal& real(std::unique_ptr<KpPathSeg> const& seg, int index) const;
    int realCount() const;

    /** The element with `content` in it. */
    QByteArray element(QByteArray const& content) const;
    /** The coordinate element of the real at `index`. */
    QByteArray coordinate(int index, QByteArray const& attributes) const;
    /** Coordinates with the values 1, 2, ..., in document order, `gap` around each of them. */
    QByteArray countingContent(QByteArray const& gap = QByteArray()) const;
    /** The stream form of a segment. */
    static QByteArray streamText(KpPathSeg& seg);
    /** The DOM form of a segment, as OutlineTesting::meaning tells it. */
    static QString domMeaning(KpPathSeg& seg);

    TestedKind const kind;

private Q_SLOTS:
    void isBornBoundInProportion();
    void knowsTheOwnerGiven();
    void castsToItsOwnKindOnly();
    void cloneHasEveryFieldAndNoOwner();
    void translateMovesItsPoints();
    void applyTransformMapsItsPoints();
    void updateValueReachesEveryReal_data();
    void updateValueReachesEveryReal();
    void updateRateReachesEveryReal();
    void collapsedBoxKeepsEveryRate();

    void writesCoordinatesInOrder();
    void writesEachReal_data();
    void writesEachReal();
    void domWriterAppendsToTheElementGiven();
    void readsAttributes_data();
    void readsAttributes();
    void readsInAnyOrder();
    void stepsOverWhatItDoesNotKnow_data();
    void stepsOverWhatItDoesNotKnow();
    void ignoresWhatStandsInACoordinate();
    void missingCoordinatesStayAsTheyWere();
    void emptyElementChangesNothing_data();
    void emptyElementChangesNothing();
    void repeatedCoordinateCountsAsTheReaderSays();
    void nullElementChangesNothing();
    void contextIsNotExamined_data();
    void contextIsNotExamined();
    void truncatedInputKeepsWhatWasComplete();
    void truncatedDomReadsNothingElse();
    void randomSegmentsReadBackRounded();
};

#endif // SEGMENTTESTING_H
