// The table of tst_corpus.cpp, included there.

QString atRow(const char *file, int row, const QString &text)
{
    return QStringLiteral("File %1, row %2: %3").arg(QString::fromLatin1(file), QString::number(row), text);
}

QString atRows(const char *file, int first, int last, const QString &text)
{
    return QStringLiteral("File %1, rows %2 to %3: %4")
        .arg(QString::fromLatin1(file), QString::number(first), QString::number(last), text);
}

QString atHeader(const char *file, int last, const QString &text, int first = 1)
{
    return QStringLiteral("File %1, header at rows %2 to %3: %4. Subsequent data rows will not be read.")
        .arg(QString::fromLatin1(file), QString::number(first), QString::number(last), text);
}

QString unfinished(const char *file, int row)
{
    return atRow(file, row, QStringLiteral("Header ended unexpectedly. Trying to make sense of it anyway."));
}

/// A file that is read without a word.
Case silent(const char *file, int records, int ignoredRows = 0)
{
    return {file, records, ignoredRows, {}};
}

Case rowFault(const char *file, int records, int row, const char *text)
{
    return {file, records, 0, {atRow(file, row, QString::fromUtf8(text))}};
}

/// A header that is refused, with the rows behind it.
Case headerFault(const char *file, int lastRow, const char *text, int lostRows = 1)
{
    return {file, 0, lostRows, {atHeader(file, lastRow, QString::fromUtf8(text))}};
}

const QList<Case> &cases()
{
    static const char tooMany[] = "Header describes too many values";
    static const char noEnd[] = "Failed to read end time";
    static const char names[] = "Electrometer count does not match the names";
    static const QList<Case> table = {
        // rows
        silent("row-plain.records", 2),
        silent("row-carriage-returns.records", 2),
        silent("row-trailing-tab.records", 2),
        silent("row-without-line-feed.records", 2),
        silent("row-comments-between.records", 3),
        silent("row-odd-numbers.records", 1),
        silent("row-nul-in-fields.records", 1),
        silent("row-begin-time-empty.records", 1),
        {"row-too-few-fields.records",
         2,
         0,
         {atRows("row-too-few-fields.records", 12, 13, "5 fields found, 14 expected")}},
        rowFault("row-too-many-fields.records", 0, 11, "16 fields found, 14 expected"),
        rowFault("row-empty-line.records", 2, 12, "1 fields found, 14 expected"),
        rowFault("row-cut-short.records", 1, 12, "8 fields found, 14 expected"),
        rowFault("row-nul-bytes.records", 1, 12, "1 fields found, 14 expected"),
        rowFault("row-end-time-empty.records", 0, 11, noEnd),
        // times
        rowFault("time-month-13.records", 0, 11, noEnd),
        silent("time-second-61.records", 1),
        rowFault("time-year-10000.records", 0, 11, noEnd),
        silent("time-year-zero.records", 1),
        rowFault("time-day-0.records", 0, 11, noEnd),
        silent("time-absurd-zone.records", 1),
        silent("time-huge-fraction.records", 1),
        rowFault("time-cut.records", 0, 11, noEnd),
        rowFault("time-letters.records", 0, 11, noEnd),
        // flags
        silent("row-flags.records", 2),
        {"row-flag-undefined.records",
         2,
         0,
         {atRows("row-flag-undefined.records", 11, 12, "Encounterend undefined flag ids")}},
        rowFault("row-flag-defined-late.records", 2, 11, "Encounterend undefined flag ids"),
        rowFault("row-flag-without-colon.records", 1, 11, "Invalid flag definition line"),
        silent("row-flag-not-yaml.records", 1),
        silent("row-flag-deep-yaml.records", 1),
        silent("flag-levels.diagnostics", 4),
        {"flag-levels-wrong-length.diagnostics",
         2,
         0,
         {atRows("flag-levels-wrong-length.diagnostics", 14, 15, "Ignoring invalid flags data")}},
        headerFault("flag-levels-null-freq.diagnostics", 13, "'header → flags → [1] → freq' must be double, but was "),
        // lines outside of any block are lost in silence, and counted
        silent("no-header.records", 0, 2),
        silent("no-header-comments.records", 0, 2),
        silent("empty.records", 0),
        silent("only-line-feeds.records", 0, 3),
        silent("binary.records", 0, 9),
        silent("byte-order-mark.records", 0, 11),
        silent("utf-16.records", 0, 12),
        // headers as a whole
        silent("header-alone.records", 0),
        silent("header-unfinished.records", 0, 9),
        silent("header-cut-in-yaml.records", 0, 3),
        silent("header-restarted.records", 1, 9),
        silent("header-twice.records", 2),
        silent("header-magic-with-blanks.records", 1),
        silent("header-two-documents.records", 1),
        {"header-without-column-row.records", 1, 1, {unfinished("header-without-column-row.records", 10)}},
        headerFault("header-of-raw-data.records", 10, "Unknown file"),
        headerFault("header-unknown-kind.records", 10, "Unknown file", 2),
        rowFault("header-empty-yaml.records", 1, 5, "14 fields found, 4 expected"),
        silent("header-empty-yaml.flags", 1),
        headerFault("header-empty-yaml.currents", 3, "Header does not describe electrometers"),
        headerFault("header-not-a-map.records", 5, "Header has bad structure"),
        headerFault("header-not-yaml.records", 4,
                    "(<header data>) parser error: while parsing a flow sequence at line 1, column 5; did not find "
                    "expected ',' or ']' at line 3, column 1"),
        headerFault("header-tab-in-yaml.records", 4,
                    "(<header data>) Scanner error: while scanning for the next token at line 1, column 2; found "
                    "character that cannot start any token at line 1, column 2"),
        headerFault("header-latin-1.records", 11,
                    "(<header data>) Reader error: invalid trailing UTF-8 octet: #a at 218"),
        headerFault("header-deep.records", 4, "(<header data>) Too much nesting at line 1, column 204"),
        headerFault("header-deep-closed.records", 4, "(<header data>) Too much nesting at line 1, column 204"),
        headerFault("header-aliases-expand.records", 13, "(<header data>) Too many nodes at line 4, column 27"),
        silent("header-many-anchors.records", 1),
        silent("header-duplicate-keys.records", 1),
        headerFault("header-mode-not-quoted.records", 10, "'header → opmodes → [2]' must be QString, but was bool"),
        headerFault("header-null-modes.records", 10, "'header → opmodes' must be QVariantList, but was "),
        silent("header-without-flags-column.records", 1),
        // electrometers
        headerFault("electrometers-negative.records", 10, names),
        headerFault("electrometers-above-names.records", 10, names),
        headerFault("electrometers-huge.records", 10, tooMany),
        headerFault("electrometers-too-many.records", 10, tooMany),
        headerFault("electrometers-absent.diagnostics", 6, "Header does not describe electrometers or diagnostics"),
        headerFault("electrometers-name-is-number.records", 10,
                    "'header → electrometer names → [1]' must be QString, but was int"),
        rowFault("electrometers-not-a-number.records", 0, 11, "14 fields found, 6 expected"),
        rowFault("electrometers-beyond-32-bits.records", 0, 11, "14 fields found, 6 expected"),
        silent("electrometers-below-names.records", 1),
        {"electrometers-differ.records",
         1,
         1,
         {atHeader("electrometers-differ.records", 21, "Electrometer count does not match previous value", 12)}},
        {"electrometers-differ-names-no-list.records",
         1,
         1,
         {atHeader("electrometers-differ-names-no-list.records", 21, "Electrometer count does not match previous value",
                   12)}},
        {"groups-differ.records", 1, 1, {atHeader("groups-differ.records", 21, "Different eletrometer groups", 12)}},
        silent("groups-other-names.records", 2),
        silent("groups-huge.records", 1),
        headerFault("groups-short.records", 10, "'header → electrometer groups → neg → [1]' must be int, but was "),
        headerFault("groups-not-a-list.records", 10,
                    "'header → electrometer groups → neg' must be QVariantList, but was int"),
        // parameters
        headerFault("parameter-without-name.records", 8, "'name' was not found at header → parameters → [0]"),
        headerFault("parameter-null-unit.records", 8, "'header → parameters → [0] → unit' must be QString, but was "),
        headerFault("parameters-too-many.records", 8, tooMany),
        silent("parameters-grow.records", 2),
        silent("parameter-twice.records", 1),
        // spectra
        silent("spectra-plain.spectra", 3),
        silent("spectra-errors.spectra", 1),
        silent("spectra-base-units.spectra", 1),
        silent("spectra-null-hash.spectra", 1),
        silent("spectra-no-hash.spectra", 1),
        silent("spectra-no-points.spectra", 1),
        silent("spectra-points-of-zero.spectra", 1),
        silent("spectra-points-extreme.spectra", 1),
        headerFault("spectra-unknown-unit.spectra", 6, "Invalid unit: Unknown unit 'furlong'"),
        headerFault("spectra-unknown-scale.spectra", 6, "Unknown scale \"weight\""),
        headerFault("spectra-unknown-unit-and-scale.spectra", 6, "Invalid unit: Unknown unit 'furlong'"),
        headerFault("spectra-unit-is-number.spectra", 6,
                    "'header → spectra → [0] → xunit' must be QString, but was double"),
        headerFault("spectra-points-are-words.spectra", 6,
                    "'header → spectra → [0] → xpoints → [1]' must be double, but was QVariantList"),
        headerFault("spectra-not-a-map.spectra", 4, "'header → spectra → [0]' must be QVariantMap, but was int"),
        headerFault("spectra-too-many-points.spectra", 6, tooMany),
        headerFault("spectra-missing.spectra", 4, "Header does not describe spectra"),
        {"spectra-same-hash-differs.spectra", 2, 0, {"Found a different spectrum with a known hash."}},
        // old style
        silent("old-plain.sig", 3),
        headerFault("old-column-row-short.sig", 6,
                    "The header row (first after the \"#...\") contains wrong number of elements"),
        headerFault("old-column-row-other.sig", 6, "Header row does not start with \"begintime,endtime\""),
        rowFault("old-wrong-field-count.sig", 1, 8, "5 fields found, 13 expected"),
        {"old-unit-refused.sig", 1, 0, {"Unit parsing error: Unknown unit 'cm3'", "Spectrum will be ignored"}},
        headerFault("old-spectrum-line-bad.sig", 6, "Failed to understand header: Spectrum header line"),
        {"old-spectrum-not-density.sig", 1, 0, {"Not nd spectrum will be ignored"}},
        {"old-spectrum-bad-point.sig", 1, 0, {"Spectrum header: x is not a number"}},
        headerFault("old-electrometers-bad.sig", 6, "Failed to understand header: Electrometer currents header line"),
        headerFault("old-electrometers-huge.sig", 6, tooMany),
        {"old-group-invalid.sig", 1, 0, {"Invalid electrometer channel group 'neg'"}},
        {"old-group-tokens.sig", 1, 0, {"Electrometer currents header line is a bit invalid"}},
        silent("old-then-new.records", 2),
        {"new-then-old-count-differs.records",
         2,
         0,
         {"Electrometer current count not equal to previous value.  Electrometer fields will be ignored in this "
          "file."}},
        rowFault("old-spectrum-bad-number.sig", 1, 7, "'twenty' is not a floating point number"),
        silent("old-spectrum-empty-field.sig", 1),
    };
    return table;
}
