#include "demo/campaign.h"

#include "demo/diagnostics.h"
#include "demo/eventflags.h"
#include "demo/random.h"
#include "spectra/recordinversion.h"

#include <cmath>

namespace Demo {

namespace {

constexpr std::int64_t utcOffset = 7200;
constexpr std::int64_t firstMidnight = 1557784800; // 2019-05-14 00:00:00 at +02:00, in seconds UTC
constexpr int finePointCount = 121;

double hourOf(double day)
{
    return 24 * (day - std::floor(day));
}

/// What a day file keeps of a number, so that files hold exactly what was inverted.
double asPrinted(double value)
{
    return QString::number(value, 'g', 6).toDouble();
}

} // namespace

struct Campaign::Channel {
    Mode mode;
    Polarity polarity;
    Axis fineAxis; ///< well beyond the published points on both sides
    RealMatrix fineMatrix;
};

Campaign::Campaign(const Settings &settings)
    : m_settings(settings), m_atmosphere(settings.seed), m_metadata(std::make_shared<Spectrometer::RecordMetadata>()),
      m_diagnostics(std::make_unique<DiagnosticSource>()), m_inverterFiles(makeInverterFiles(m_instrument))
{
    makeMetadata();
    for (const InverterFile &file : m_inverterFiles) {
        m_inverters.push_back(file.inverter);
        m_spectra[modeName(file.mode)] << file.inverter->info();
        makeChannel(file.mode, file.polarity);
    }
}

Campaign::~Campaign() = default;

void Campaign::makeMetadata()
{
    m_metadata->instrumentSettings = {
        {QStringLiteral("name"), QStringLiteral("Demonstration mobility spectrometer")},
        {QStringLiteral("serial number"), 7},
        {QStringLiteral("site"), QVariantMap{{QStringLiteral("name"), QStringLiteral("Meadow station")},
                                             {QStringLiteral("latitude"), 58.27},
                                             {QStringLiteral("longitude"), 27.31},
                                             {QStringLiteral("altitude"), 52.5}}},
        {QStringLiteral("flows"), QVariantMap{{QStringLiteral("sample"), 60.0},
                                              {QStringLiteral("sheath"), QVariantList{29.8, 30.1}},
                                              {QStringLiteral("unit"), QStringLiteral("l/min")}}},
        {QStringLiteral("averaging"),
         QVariantMap{{QStringLiteral("interval"), m_settings.interval},
                     {QStringLiteral("cycle"),
                      QVariantList{QStringLiteral("ions"), QStringLiteral("particles"), QStringLiteral("offset")}},
                     {QStringLiteral("wait for settling"), true}}}};
    m_metadata->totalElectrometers = Instrument::electrometerCount;
    for (Polarity polarity : {Polarity::Negative, Polarity::Positive}) {
        const int first = Instrument::firstChannel(polarity);
        m_metadata->electrometerGroups[polarityName(polarity)] = {first, first + Instrument::electrometersPerPolarity};
        for (int i = 0; i < Instrument::electrometersPerPolarity; ++i)
            m_metadata->electrometerNames
                << QStringLiteral("%1 %2").arg(polarityName(polarity), QString::number(i + 1));
    }
    for (int i = 0; i < modeCount; ++i)
        m_metadata->opmodes << Opmode(i, modeName(Mode(i)));
    DiagnosticSource::describe(*m_metadata);
    DpVariant variant;
    variant.name = variant.shortName = QStringLiteral("block");
    m_metadata->dpVariants << variant;
}

void Campaign::makeChannel(Mode mode, Polarity polarity)
{
    const RealVector points =
        mode == Mode::Ions ? logarithmicGrid(4.5, 0.0009, finePointCount) : logarithmicGrid(0.6, 70, finePointCount);
    m_channels.push_back(std::make_unique<Channel>(
        Channel{mode, polarity, Axis(mode, polarity, points), m_instrument.matrix(mode, polarity, points)}));
}

const Campaign::Channel *Campaign::channel(Mode mode, Polarity polarity) const
{
    for (const auto &channel : m_channels)
        if (channel->mode == mode && channel->polarity == polarity)
            return channel.get();
    return nullptr;
}

// ---- times

int Campaign::slotCount() const
{
    return int(std::int64_t(m_settings.days) * 86400 / m_settings.interval);
}

double Campaign::averagingSeconds() const
{
    return m_settings.interval * 14.0 / 15; // the rest is for settling after the change of mode
}

RecordTime Campaign::beginOf(int slot) const
{
    return recordTimeFromTicks((firstMidnight + std::int64_t(slot) * m_settings.interval) * ticksPerSecond);
}

double Campaign::dayOf(int slot) const
{
    return (slot * double(m_settings.interval) + averagingSeconds() / 2) / 86400;
}

/// A stop for service at night, and now and then a record that was lost.
bool Campaign::isMissing(int slot) const
{
    const double hour = hourOf(dayOf(slot));
    Random random(m_settings.seed, 0x200000000u + std::uint64_t(slot));
    return (hour > 1.6 && hour < 2.1) || random.uniform() < 0.008;
}

/// A while in the early morning in which the positive charger doesn't work, and no variances are had, so that nothing
/// can be inverted.
bool Campaign::hasFailed(int slot) const
{
    const double hour = hourOf(dayOf(slot));
    return hour > 6.4 && hour < 7.2;
}

// ---- truth

RealVector Campaign::truth(Mode mode, Polarity polarity, const RealVector &points, double day) const
{
    return m_atmosphere.aerosolAt(day).densities(Axis(mode, polarity, points));
}

RealVector Campaign::trueCurrents(Mode mode, Polarity polarity, double day) const
{
    return trueCurrents(mode, polarity, m_atmosphere.aerosolAt(day));
}

RealVector Campaign::trueCurrents(Mode mode, Polarity polarity, const Aerosol &aerosol) const
{
    const Channel *model = channel(mode, polarity);
    if (!model)
        return RealVector(Instrument::electrometersPerPolarity, 0.0);
    return boost::numeric::ublas::prod(model->fineMatrix, aerosol.densities(model->fineAxis));
}

// ---- records

void Campaign::measureCurrents(Record &record, const TrueCurrents &trueCurrents, double day, Random &random) const
{
    for (RealVector *values : {&record.currents, &record.currentVariances, &record.rawCurrents, &record.voltages})
        values->resize(Instrument::electrometerCount);
    const double warmth = m_atmosphere.weatherAt(day).temperature - 12.5;
    for (Polarity polarity : {Polarity::Negative, Polarity::Positive}) {
        const RealVector &currents = trueCurrents[std::size_t(polarity)];
        for (int i = 0; i < Instrument::electrometersPerPolarity; ++i) {
            const auto slot = std::size_t(Instrument::firstChannel(polarity)) + std::size_t(i);
            const double variance = m_instrument.variance(currents[std::size_t(i)], averagingSeconds());
            const double current = currents[std::size_t(i)] + std::sqrt(variance) * random.normal();
            const double zero = 6 * std::sin(1.7 * double(slot)) + 0.35 * warmth * std::cos(2.9 * double(slot));
            record.currents[slot] = asPrinted(current);
            record.currentVariances[slot] = asPrinted(m_instrument.variance(current, averagingSeconds()));
            record.rawCurrents[slot] = current + zero;
            record.voltages[slot] = 0.012 * (current + zero) - 0.8 + 0.05 * std::cos(double(slot));
        }
    }
    if (random.uniform() < 0.02) // a value that was thrown out as an outlier
        record.currents[std::size_t(random.uniform() * Instrument::electrometerCount)] = noValue;
}

void Campaign::addFlags(Record &record, int slot) const
{
    const double hour = hourOf(dayOf(slot));
    const auto mean = [&](DiagnosticSource::Quantity quantity) {
        return record.variables[std::size_t(DiagnosticSource::meanSlot(quantity))];
    };
    const Mode mode = modeOf(slot);
    const EventFlags &flags = EventFlags::instance();
    const auto raise = [&](bool condition, const EventFlags::Pointer &flag) {
        if (condition)
            record.flags.push_back(flag);
    };
    raise(hasFailed(slot), flags.chargerFailure);
    raise(mean(DiagnosticSource::Humidity) > 66, flags.highHumidity);
    raise(mode == Mode::Particles && !hasFailed(slot) && mean(DiagnosticSource::ChargerCurrentPos) < 28,
          flags.weakCharger);
    raise(mode == Mode::Offset && mean(DiagnosticSource::ElectronicsTemperature) > 34.5, flags.zeroDrift);
    raise(hour > 2.1 && hour < 2.1 + 3 * m_settings.interval / 3600.0, flags.inletCleaned);
}

std::shared_ptr<Record> Campaign::record(int slot) const
{
    if (isMissing(slot))
        return nullptr;
    Random random(m_settings.seed, 0x300000000u + std::uint64_t(slot));
    const Mode mode = modeOf(slot);
    const double day = dayOf(slot);
    const double hour = hourOf(day);

    auto record = std::make_shared<Record>();
    record->beginTime = beginOf(slot);
    record->endTime = record->beginTime + Ticks(std::int64_t(m_settings.interval) * ticksPerSecond / 15 * 14);
    record->midTime = Spectrometer::middleOf(record->beginTime, record->endTime);
    record->beginUtcOffset = record->endUtcOffset = utcOffset;
    record->dpVariantId = 0;
    record->opmode = int(mode);

    const Aerosol aerosol = m_atmosphere.aerosolAt(day);
    const TrueCurrents currents{trueCurrents(mode, Polarity::Negative, aerosol),
                                trueCurrents(mode, Polarity::Positive, aerosol)};
    measureCurrents(*record, currents, day, random);
    record->variables =
        m_diagnostics->measure(m_atmosphere.weatherAt(day), day, mode == Mode::Particles, hasFailed(slot), random);
    addFlags(*record, slot);
    if (hour > 8.5 && hour < 9.2) { // the barometer's line was down
        record->variables[std::size_t(DiagnosticSource::meanSlot(DiagnosticSource::Pressure))] = noValue;
        record->variables[std::size_t(DiagnosticSource::deviationSlot(DiagnosticSource::Pressure))] = noValue;
    }
    if (hasFailed(slot))
        record->currentVariances = RealVector(Instrument::electrometerCount, 0.0);
    const auto noComplaint = [](int, const QString &) {}; // every inverter fits the instrument
    record->spectra = SpectMath::invertRecord(m_inverters, *record, *m_metadata, noComplaint)->spectra;
    return record;
}

} // namespace Demo
