#include "phonebook/collection_panel.h"

#include "runtime/number_picture.h"

namespace velorn {

namespace {

int days_of(int month, int year) {
    if (month == 2) return year % 4 == 0 ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

std::string two_digits(int number) { return format(static_cast<double>(number), "00"); }

} // namespace

void CollectionStart::add_day() {
    ++holtag;
    normalise();
}

void CollectionStart::normalise() {
    if (holtag <= days_of(holmonat, holjahr)) return;
    holtag = 1;
    if (++holmonat <= 12) return;
    holmonat = 1;
    ++holjahr;
}

void CollectionStart::subtract_day() {
    if (--holtag >= 1) return;
    if (--holmonat < 1) {
        holmonat = 12;
        --holjahr;
    }
    holtag = days_of(holmonat, holjahr);
}

CollectionPanel::CollectionPanel(const EventLoop& loop, Module1& module1, const Telefonbuch& book,
                                 FrmTelefon& frmtelefon)
    : loop_(loop), module1_(module1), book_(book), frmtelefon_(frmtelefon) {
    frmtelefon_.comautohol.Click = [this] { comautohol_Click(); };
    frmtelefon_.abbruch.Click = [this] { abbruch_Click(); };
    frmtelefon_.comdatplus.Click = [this] {
        start_.add_day();
        show_start();
    };
    frmtelefon_.comdatminus.Click = [this] {
        start_.subtract_day();
        show_start();
    };
    frmtelefon_.comuhrplus.Click = [this] {
        if (start_.holstunde < 23) ++start_.holstunde;
        show_start();
    };
    frmtelefon_.comuhrminus.Click = [this] {
        if (start_.holstunde > 0) --start_.holstunde;
        show_start();
    };
}

void CollectionPanel::comautohol_Click() {
    frmtelefon_.picdownl.Visible = true;
    const DateTime now = loop_.local_time();
    start_ = {now.day, now.month, now.year, now.hour, now.minute};
    frmtelefon_.txtstartnr.Text = "1";
    frmtelefon_.txtstopnr.Text = "2000";
    int planned = 0;
    for (int i = 1; i <= Telefonbuch::last_shown; ++i)
        planned += book_[i].autoflag == Telefonbuch::collected ? 1 : 0;
    frmtelefon_.labanz.Caption = std::to_string(planned);
    show_start();
}

void CollectionPanel::show_start() {
    frmtelefon_.labstartdat.Caption = two_digits(start_.holtag) + '.' + two_digits(start_.holmonat) + '.' +
                                      format(static_cast<double>(start_.holjahr), "0000");
    frmtelefon_.labstartuhr.Caption = two_digits(start_.holstunde) + ':' + two_digits(start_.holminute);
}

void CollectionPanel::abbruch_Click() {
    frmtelefon_.picdownl.Visible = false;
    module1_.autoholen = false;
    module1_.dateiladen = false;
    module1_.autoverbindung = false;
    frmtelefon_.Timer2.Enabled = false;
}

} // namespace velorn
