#include "runtime/failure.h"
#include "runtime/text.h"

#include <gtest/gtest.h>
#include <memory>

namespace velorn {
namespace {

struct Row {
    RunTimeError error;
    int number;
    std::string_view text;
};

const Row rows[] = {
    {RunTimeError::invalid_call, 5, "Ungültiger Prozeduraufruf oder ungültiges Argument"},
    {RunTimeError::overflow, 6, "Überlauf"},
    {RunTimeError::subscript_out_of_range, 9, "Index außerhalb des gültigen Bereichs"},
    {RunTimeError::division_by_zero, 11, "Division durch Null"},
    {RunTimeError::type_mismatch, 13, "Typen unverträglich"},
    {RunTimeError::file_not_found, 53, "Datei nicht gefunden"},
    {RunTimeError::file_already_open, 55, "Datei bereits geöffnet"},
    {RunTimeError::device_io, 57, "Geräte-E/A-Fehler"},
    {RunTimeError::disk_full, 61, "Festplatte voll"},
    {RunTimeError::past_end_of_file, 62, "Eingabe hinter Dateiende"},
    {RunTimeError::permission_denied, 70, "Zugriff verweigert"},
    {RunTimeError::path_file_access, 75, "Fehler beim Zugriff auf Pfad oder Datei"},
    {RunTimeError::path_not_found, 76, "Pfad nicht gefunden"},
    {RunTimeError::invalid_property, 380, "Ungültiger Eigenschaftswert"},
    {RunTimeError::invalid_port, 8002, "Ungültige Anschlußnummer"},
    {RunTimeError::port_already_open, 8005, "Anschluß ist bereits geöffnet"},
    {RunTimeError::dialog_cancelled, 32755, "Abbruch gewählt"},
};

TEST(Failure, everyErrorHasItsNumberAndItsGermanText) {
    for (const Row& row : rows) {
        const Failure made = failure(row.error);
        EXPECT_EQ(made.number, row.number);
        EXPECT_EQ(utf8_from_cp1252(made.text), row.text);
        EXPECT_TRUE(made.is(row.error));
    }
}

TEST(Failure, isOneErrorOnly) {
    EXPECT_FALSE(failure(RunTimeError::file_not_found).is(RunTimeError::path_not_found));
}

TEST(Failure, aDetailFollowsBehindAColon) {
    EXPECT_EQ(failure(RunTimeError::file_not_found, "c:\\a.par").text, "Datei nicht gefunden: c:\\a.par");
}

TEST(Failure, aNumberOutsideTheTableHasATextToo) {
    EXPECT_EQ(error_text(static_cast<RunTimeError>(4711)), "Unbekannter Fehler");
}

TEST(ResultOf, aValueIsThatValue) {
    const Result<std::string> result(std::string("abc"));
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, "abc");
    EXPECT_EQ(result->size(), 3U);
}

TEST(ResultOf, aFailureIsThatFailure) {
    const Result<int> result(failure(RunTimeError::overflow));
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.failure().number, 6);
}

TEST(ResultOf, aValueThatCannotBeCopiedMovesOut) {
    Result<std::unique_ptr<int>> result(std::make_unique<int>(7));
    const std::unique_ptr<int> taken = *std::move(result);
    EXPECT_EQ(*taken, 7);
}

TEST(ResultOf, anOutcomeIsGoodUntilAFailureIsPutIn) {
    EXPECT_TRUE(Outcome().ok());
    const Outcome bad = failure(RunTimeError::disk_full);
    ASSERT_FALSE(bad);
    EXPECT_EQ(bad.failure().text, "Festplatte voll");
}

} // namespace
} // namespace velorn
