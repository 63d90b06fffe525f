#include "forms/menu_bars.h"
#include "drawing/picture_ids.h"
#include "touch/command_ids.h"
#include "touch/soft_key_bar.h"
#include "util/string_ids.h"
#include "util/string_store.h"

namespace
{
// In order on the bar.
constexpr struct {
    int Bar, Command, Text, Image;
} kKeys[] = {
    {kMenuBarDetails, CmdEdit, StrEdit, PictureEdit},
    {kMenuBarDetails, CmdCloseDetails, StrClose, PictureCancel},
    {kMenuBarClose, CmdCloseDetails, StrClose, PictureCancel},
    {kMenuBarDatePicker, CmdDone, StrDone, PictureDone},
    {kMenuBarDatePicker, CmdMenu, StrMenu, PictureMenu},
    {kMenuBarSelect, CmdDone, StrSelect, PictureDone},
    {kMenuBarSelect, CmdCancel, StrCancel, PictureCancel},
    {kMenuBarCategories, CmdDone, StrDone, PictureDone},
    {kMenuBarCategories, CmdMenu, StrOptions, PictureMenu},
    {kMenuBarMyText, CmdDone, StrSelect, PictureDone},
    {kMenuBarMyText, CmdMenu, StrMenu, PictureMenu},
    {kMenuBarColors, CmdDone, StrDone, PictureDone},
    {kMenuBarColors, CmdMenu, StrMenu, PictureMenu},
    {kMenuBarForm, CmdDone, StrDone, PictureDone},
    {kMenuBarForm, CmdCancel, StrCancel, PictureCancel},
    {kMenuBarYesNo, kAnswerYes, StrYes, PictureDone},
    {kMenuBarYesNo, kAnswerNo, StrNo, PictureCancel},
    {kMenuBarOk, kAnswerOk, StrOk, PictureDone},
    {kMenuBarCancel, CmdCancel, StrCancel, PictureCancel},
};
} // namespace

void LoadMenuBar(CSoftKeyBar& keys, int barId, int current)
{
    keys.Clear();
    for (const auto& key : kKeys) {
        if (key.Bar == barId)
            keys.AddButton(key.Command, key.Image, keys.GetCount() == current, GetString(key.Text));
    }
}
