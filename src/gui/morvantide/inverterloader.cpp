#include "gui/morvantide/inverterloader.h"

#include "spectra/inverterfiles.h"

#include <QWidget>

InverterLoader::InverterLoader(QWidget *window)
    : QObject(window),
      m_work(window, {QStringLiteral("inverters"), tr("Reading inverters"), tr("Stopping after this inverter")})
{
}

void InverterLoader::start(const QStringList &paths)
{
    const auto result = std::make_shared<Result>();
    m_work.start(
        [result, paths](ModalWork::Monitor &monitor) {
            const auto goesOn = [&monitor](const QString &next) {
                monitor.tell(next);
                return !monitor.isCancelled();
            };
            result->inverters = SpectMath::loadChosenInverters(paths, unitTable(), &result->errors, goesOn);
        },
        [this, result](bool isCancelled) {
            result->cancelled = isCancelled;
            Q_EMIT finished(*result);
        });
}
