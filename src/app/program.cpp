#include "app/program.h"

namespace velorn {

Program::Program(World given)
    : world(std::move(given)),
      dialogs(world.dialogs, module1),
      frmTerminal(world.loop),
      settings_files(world.files, dialogs, settings, module1.apppfad),
      waits(world.loop, frmTerminal),
      MSComm1(world.loop, world.serial),
      Winsock1(world.tcp),
      output(module1, frmTerminal, MSComm1, Winsock1),
      lamps(frmTerminal, Winsock1),
      port_opening(world.loop, dialogs, module1, settings, frmTerminal, MSComm1),
      frmProperties(dialogs, world.serial, settings, frmTerminal, MSComm1),
      port_commands(world.loop, dialogs, world.screen, settings_files, frmTerminal, MSComm1, port_opening,
                    frmProperties),
      modem(world.loop, dialogs, module1, settings, settings_files, frmTerminal, waits, output, MSComm1,
            port_opening),
      hang_up(world.loop, dialogs, events, module1, settings, frmTerminal, waits, output, Winsock1),
      tcp_link(events, module1, frmTerminal, waits, output, Winsock1),
      receive(world.loop, world.files, events, module1, settings, frmTerminal, MSComm1, Winsock1, output),
      log_file(world.loop, world.files, dialogs, events, settings, settings_files, frmTerminal),
      protocol_file(world.loop, world.files, events, module1, frmTerminal),
      capture(module1, frmTerminal, output, receive, protocol_file),
      snapshots(world.loop, dialogs, world.printer, events, module1, frmTerminal, protocol_file),
      looks(dialogs, settings, settings_files, frmTerminal),
      remote_control(world.loop, dialogs, events, module1, settings, settings_files, frmTerminal, waits,
                     output, MSComm1, receive.receive_events, looks),
      keys(frmTerminal, settings, waits, output),
      frmftast(settings),
      visualisation(world.files, dialogs, world.processes, world.visualisation, module1, frmTerminal, waits,
                    output, receive.receive_events),
      frmtelefon(world.loop),
      phonebook_files(world.files, settings, telefonbuch),
      phonebook_lines(world.loop, world.files, dialogs, module1, settings, telefonbuch, frmtelefon),
      phonebook_edits(world.loop, dialogs, module1, telefonbuch, frmtelefon, phonebook_lines),
      phonebook_window(world.loop, world.files, dialogs, events, module1, settings, telefonbuch, frmTerminal,
                       frmtelefon, phonebook_files, phonebook_lines),
      dialling(world.loop, dialogs, events, world.gateway, module1, settings, telefonbuch, frmTerminal,
               frmtelefon, MSComm1, Winsock1, output, tcp_link, protocol_file, phonebook_window),
      collection_panel(world.loop, module1, telefonbuch, frmtelefon),
      gsm(world.loop, module1, frmtelefon, output),
      frmgrafick(world.loop),
      archive(world.files),
      download_diary(world.files),
      download(world.loop, module1, frmtelefon, frmgrafick, archive, download_diary, output,
               receive.receive_events),
      collection_log(world.loop, world.files, module1, settings, frmTerminal),
      archive_window(world.loop, world.files, dialogs, module1, settings_files, telefonbuch, phonebook_files,
                     frmTerminal, frmtelefon, frmgrafick, archive, download_diary, download, collection_log),
      evaluation(world.loop, dialogs, world.printer, world.screen, module1, frmgrafick, archive),
      collection(world.loop, world.files, dialogs, world.log_folder, module1, settings, settings_files,
                 telefonbuch, frmtelefon, phonebook_window, phonebook_lines, collection_panel, archive_window,
                 dialling, collection_log),
      frmedit(world.loop, world.files, dialogs, world.printer, module1),
      start(world, events, module1, settings, settings_files, frmTerminal, waits, MSComm1, looks,
            archive_window),
      commands(world, module1, settings, settings_files, frmTerminal, start, output, frmftast, frmtelefon,
               phonebook_window, frmedit) {
    // Calls go down and news goes up; here the floors' news finds its listeners.
    events.evaluation_wanted.connect([this] { archive_window.mnugrafick_Click(); });
    archive_window.archive_there.connect([this] { evaluation.archive_opened(); });
    archive_window.archive_gone.connect([this] { evaluation.archive_closed(); });
    evaluation.events.archive_lost.connect([this] { archive_window.tell_of_lost_file(); });
    download.tracks_told.connect([this] { evaluation.neuzeichnen(); });
    download.panel_closed.connect([this] { evaluation.neuzeichnen(); });
    events.weiterholen.connect([this] { collection.weiterholen(); });
    frmTerminal.tbrToolBar("grafick").Click = [this] {
        module1.grafikfern = false;
        archive_window.mnugrafick_Click();
    };
    events.edit_protocol_file.connect([this] { commands.edit_protocol_file(); });
    events.snapshots_changed.connect([this](std::string_view text) {
        if (module1.telindex >= 0) telefonbuch[module1.telindex].aufnahme = text;
    });
    remote_control.parser.screen_events.capture_begins.connect([this] { capture.begin(); });
}

} // namespace velorn
