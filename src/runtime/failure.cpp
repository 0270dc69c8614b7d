#include "runtime/failure.h"

#include "runtime/text.h"

namespace velorn {

namespace {

struct Row {
    RunTimeError error;
    std::string_view text;
};

constexpr Row table[] = {
    {RunTimeError::invalid_call, "Ungültiger Prozeduraufruf oder ungültiges Argument"_w},
    {RunTimeError::overflow, "Überlauf"_w},
    {RunTimeError::subscript_out_of_range, "Index außerhalb des gültigen Bereichs"_w},
    {RunTimeError::division_by_zero, "Division durch Null"_w},
    {RunTimeError::type_mismatch, "Typen unverträglich"_w},
    {RunTimeError::file_not_found, "Datei nicht gefunden"_w},
    {RunTimeError::file_already_open, "Datei bereits geöffnet"_w},
    {RunTimeError::device_io, "Geräte-E/A-Fehler"_w},
    {RunTimeError::disk_full, "Festplatte voll"_w},
    {RunTimeError::past_end_of_file, "Eingabe hinter Dateiende"_w},
    {RunTimeError::permission_denied, "Zugriff verweigert"_w},
    {RunTimeError::path_file_access, "Fehler beim Zugriff auf Pfad oder Datei"_w},
    {RunTimeError::path_not_found, "Pfad nicht gefunden"_w},
    {RunTimeError::invalid_property, "Ungültiger Eigenschaftswert"_w},
    {RunTimeError::invalid_port, "Ungültige Anschlußnummer"_w},
    {RunTimeError::port_already_open, "Anschluß ist bereits geöffnet"_w},
    {RunTimeError::dialog_cancelled, "Abbruch gewählt"_w},
};

} // namespace

std::string_view error_text(RunTimeError error) {
    for (const Row& row : table) {
        if (row.error == error) return row.text;
    }
    return "Unbekannter Fehler"_w;
}

Failure failure(RunTimeError error, std::string_view detail) {
    std::string text{error_text(error)};
    if (!detail.empty()) {
        text += ": ";
        text += detail;
    }
    return {static_cast<int>(error), std::move(text)};
}

} // namespace velorn
