#include "common/Arrays.h"

#include <QDateTime>
#include <cmath>
#include <random>

namespace Common {

namespace {
struct Generator {
    std::mt19937 engine;
    bool seeded = false;
};

Generator& generator() {
    static Generator g;
    return g;
}
} // namespace

void Randomize(quint32 seed) {
    generator().engine.seed(seed);
    generator().seeded = true;
}

double Rnd() {
    Generator& g = generator();
    // Seed once per run, so each run shuffles differently.
    if (!g.seeded)
        Randomize(static_cast<quint32>(QDateTime::currentMSecsSinceEpoch()));
    const double r = std::generate_canonical<double, 32>(g.engine);
    // Some library versions can round up to 1.0, which would index past the end.
    return r < 1.0 ? r : std::nextafter(1.0, 0.0);
}

void RandomizeArray(QVariant& ArrayIn) {
    if (ArrayIn.typeId() != QMetaType::QVariantList)
        return;
    QVariantList list = ArrayIn.toList();
    RandomizeArray(list);
    ArrayIn = list;
}

} // namespace Common
