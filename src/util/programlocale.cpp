#include "util/programlocale.h"

#include <QLocale>
#include <QTextCodec>

#include <clocale>
#include <cstring>

#include <langinfo.h>

void setProgramLocale()
{
    std::setlocale(LC_NUMERIC, "C");
    std::setlocale(LC_MESSAGES, "C");
    QLocale::setDefault(QLocale(QLocale::C, QLocale::AnyCountry));
    if (std::strcmp(nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0)
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}
