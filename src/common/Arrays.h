#pragma once
// Shuffling and searching the small arrays the fill methods and wizards keep.

#include <QList>
#include <QVariant>

#include <utility>

namespace Common {

// Seeds the generator RandomizeArray draws from; tests call it for a repeatable order.
void Randomize(quint32 seed);
// A random number in [0, 1). Seeds itself from the clock on first use.
double Rnd();

// Shuffles in place: from the last element down to the first, swap element i
// with element int(Rnd() * (i + 1)).
template <class T> void RandomizeArray(QList<T>& ArrayIn) {
    for (qsizetype i = ArrayIn.size() - 1; i >= 0; --i) {
        const auto j = static_cast<qsizetype>(Rnd() * static_cast<double>(i + 1));
        T TempElement = std::move(ArrayIn[i]);
        ArrayIn[i] = std::move(ArrayIn[j]);
        ArrayIn[j] = std::move(TempElement);
    }
}

// A value that is no list is left as it is.
void RandomizeArray(QVariant& ArrayIn);

// What ArraySearch returns when the value is not there.
inline constexpr qsizetype kNotFound = -1;

template <class T, class V> qsizetype ArraySearch(const QList<T>& array, const V& value) {
    for (qsizetype i = 0; i < array.size(); ++i)
        if (array.at(i) == value)
            return i;
    return kNotFound;
}

template <class T, class V> qsizetype ArrayCountOccurances(const QList<T>& array, const V& value) {
    qsizetype Count = 0;
    for (const T& element : array)
        if (element == value)
            ++Count;
    return Count;
}

} // namespace Common
