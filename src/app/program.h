// The whole program as one object: the shared state, the one window of each kind, and what happens in them.
// Nothing lives outside it, so two of them can run in one process without touching each other.
#pragma once

#include "accessories/frmedit.h"
#include "app/commands.h"
#include "app/program_start.h"
#include "app/unattended_dialogs.h"
#include "app/world.h"
#include "archive/archive.h"
#include "archive/archive_window.h"
#include "archive/collection.h"
#include "archive/collection_log.h"
#include "archive/download.h"
#include "archive/download_diary.h"
#include "archive/frm_grafick.h"
#include "core/events.h"
#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/settings.h"
#include "core/settings_files.h"
#include "core/telefonbuch.h"
#include "core/wait_counter.h"
#include "evaluation/evaluation.h"
#include "links/frm_properties.h"
#include "links/hang_up.h"
#include "links/lamps.h"
#include "links/modem.h"
#include "links/mscomm.h"
#include "links/output.h"
#include "links/port_commands.h"
#include "links/port_opening.h"
#include "links/tcp_link.h"
#include "links/winsock.h"
#include "phonebook/collection_panel.h"
#include "phonebook/dialling.h"
#include "phonebook/frm_telefon.h"
#include "phonebook/gsm.h"
#include "phonebook/phonebook_edits.h"
#include "phonebook/phonebook_files.h"
#include "phonebook/phonebook_lines.h"
#include "phonebook/phonebook_window.h"
#include "terminal/capture.h"
#include "terminal/display_looks.h"
#include "terminal/frmftast.h"
#include "terminal/keys.h"
#include "terminal/log_file.h"
#include "terminal/protocol_file.h"
#include "terminal/receive.h"
#include "terminal/remote_control.h"
#include "terminal/snapshots.h"
#include "terminal/visualisation.h"

namespace velorn {

class Program {
  public:
    explicit Program(World world);

    World world;
    Events events;
    Module1 module1;
    UnattendedDialogs dialogs;
    Settings settings;
    FrmTerminal frmTerminal;
    SettingsFiles settings_files;
    WaitCounter waits;
    MSComm MSComm1;
    Winsock Winsock1;
    Output output;
    Lamps lamps;
    PortOpening port_opening;
    FrmProperties frmProperties;
    PortCommands port_commands;
    Modem modem;
    HangUp hang_up;
    TcpLink tcp_link;
    Receive receive;
    LogFile log_file;
    ProtocolFile protocol_file;
    Capture capture;
    Snapshots snapshots;
    DisplayLooks looks;
    RemoteControl remote_control;
    Keys keys;
    Frmftast frmftast;
    Visualisation visualisation;
    Telefonbuch telefonbuch;
    FrmTelefon frmtelefon;
    PhonebookFiles phonebook_files;
    PhonebookLines phonebook_lines;
    PhonebookEdits phonebook_edits;
    PhonebookWindow phonebook_window;
    Dialling dialling;
    CollectionPanel collection_panel;
    Gsm gsm;
    FrmGrafick frmgrafick;
    Archive archive;
    DownloadDiary download_diary;
    Download download;
    CollectionLog collection_log;
    ArchiveWindow archive_window;
    Evaluation evaluation;
    Collection collection;
    Frmedit frmedit;
    ProgramStart start;
    Commands commands;
};

} // namespace velorn
