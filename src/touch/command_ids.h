// Commands, as menus, soft keys, keys and other programs send them.
// The numbers are public: never renumber or reuse.
#pragma once

enum CommandId : int {
    CmdNone = -1,
    CmdExitOther = 1,
    CmdNoFilter = 1000,
    CmdFilterFirst = 1001, // .. 1100: filter number command - 1001
    CmdFilterLast = 1100,
    CmdSearchStart = 1247,
    CmdToggleKeyboard = 1248,
    CmdTasksShowMenu = 1249,
    CmdTasksSort1Menu = 1250,
    CmdRebuildSoftKeys = 1251,
    CmdTasksSort2Menu = 1252,
    CmdTasksSort3Menu = 1253,
    CmdFilterMenu = 1254,
    CmdOpenItem = 1255,
    CmdSettings = 40012,
    CmdExit = 40019,
    CmdCancel = 40023, // of a dialog
    CmdNewAppointment = 40026,
    CmdShowDaily = 40036,
    CmdShowList = 40037,
    CmdShowMonthly = 40038,
    CmdDelete = 40039,
    CmdEdit = 40040,
    CmdCloseDetails = 40043,
    CmdViewButton = 40050,
    CmdDateBack = 40052,
    CmdDateForward = 40053,
    CmdMenu = 40054,
    CmdToday = 40055,
    CmdSaveForm = 40065, // as CmdDone
    CmdDone = 40077,     // of a dialog
    CmdShowWeekly = 40089,
    CmdCategoriesCancel = 40094, // in the menu of categories, with the next ones
    CmdSetIcon = 40095,
    CmdRemoveIcon = 40096,
    CmdAddCategory = 40097,
    CmdSetColor = 40098,
    CmdRemoveColor = 40099,
    CmdNewTask = 40101,
    CmdToggleTask = 40103,
    CmdManageFilters = 40145,
    CmdShowTasks = 40376,
    CmdSort1First = 40377, // .. 40384: sort code 100 + command - 40377
    CmdSort1Last = 40384,
    CmdSort1Ascending = 40385,
    CmdSort1Descending = 40386,
    CmdSort2First = 40387, // .. 40391
    CmdSort2Last = 40391,
    CmdSort2Ascending = 40392,
    CmdSort2Descending = 40393,
    CmdSort3First = 40394, // .. 40398
    CmdSort3Last = 40398,
    CmdSort3Ascending = 40399,
    CmdSort3Descending = 40400,
    CmdTasksExpandAll = 40401,
    CmdTasksCollapseAll = 40402,
    CmdDuplicate = 40403,
    CmdItemsToViewFirst =
        40404, // .. 40412: all, overdue, active, completed, due today, 7 days, 30 days, future, undated
    CmdItemsToViewLast = 40412,
    CmdShowSearch = 40633,
    CmdPreviousView = 40634,
    CmdSearchOptions = 40635,
    CmdSearchClear = 40636,
    CmdGoTo = 40689,
    CmdBeam = 40743,
};
