// Pictures by number, as the resource libraries hold them. The numbers are public: a library
// made elsewhere uses the same ones, so never renumber or reuse.
#pragma once

enum PictureId : int {
    // Item rows, 13 x 13 unless said otherwise.
    PictureReminder = 111,
    PicturePrivate = 112,
    PictureRecurring = 136,
    PictureNote = 137,
    PictureNoColor = 156, // 20 x 13, a category without a colour
    PictureConflict = 164,
    PictureTaskCompleted = 180, // 15 x 15
    PictureTaskActive = 181,    // 15 x 15
    PicturePriorityHigh = 182,  // 9 x 13
    PicturePriorityLow = 183,   // 9 x 13
    PictureAppointmentCount = 187,
    PictureTaskCount = 188,
    PictureAllDay = 189,
    PictureBirthday = 190,       // 15 x 15
    PictureMonthCellTasks = 191, // 9 x 9
    PictureExpanded = 199,       // 11 x 11
    PictureCollapsed = 200,      // 11 x 11
    PictureAttendees = 201,
    PictureAnniversary = 234, // 15 x 15

    // Week tiles and quick list, 11 x 11; check boxes 12 x 12.
    PictureSmallReminder = 237,
    PictureSmallPrivate = 238,
    PictureSmallRecurring = 239,
    PictureSmallNote = 240,
    PictureSmallAttendees = 241,
    PictureSmallConflict = 242,
    PictureSmallPriorityHigh = 243,
    PictureSmallPriorityLow = 244,
    PictureSmallAllDay = 245,
    PictureSmallTaskCompleted = 254,
    PictureSmallTaskActive = 255,

    // Rows of forms, 16 x 16.
    PictureFormLocation = 246,
    PictureFormStatus = 247,
    PictureFormSubject = 248, // also the reference size of a form's picture column
    PictureFormCategories = 249,
    PictureFormEnd = 250,
    PictureFormStart = 251,
    PictureFormTaskSubject = 252,

    // View selector, 48 x 48.
    PictureViewDaily = 300,
    PictureViewWeekly = 301,
    PictureViewMonthly = 302,
    PictureViewList = 303,
    PictureViewTasks = 304,
    PictureViewSearch = 305,

    // Cells of the settings menu and of the text aids, 40 x 40.
    PictureSettingsAbout = 400,
    PictureSettingsCalendarTasks = 401,
    PictureSettingsColors = 402,
    PictureSettingsDaily = 403,
    PictureSettingsGeneral = 404,
    PictureSettingsWeekly = 405,
    PictureSettingsList = 406,
    PictureSettingsMonthly = 407,
    PictureSettingsFilters = 408,
    PictureSettingsCategories = 409,
    PictureSettingsTasks = 410,
    PictureTextFullScreen = 500,
    PictureTextContact = 501,
    PictureTextMyText = 502,

    // Arrows of the date overlay, 16 x 28; page (228 x 104) of the date picker and the arrows (48 x 32)
    // that stand in each of its columns.
    PictureOverlayLeft = 601,
    PictureOverlayRight = 602,
    PictureDatePage = 603,
    PictureDateUp = 604,
    PictureDateDown = 605,

    // Soft keys and finger menus, 24 x 24.
    PictureViews = 700,
    PictureMenu = 701,
    PictureBack = 702,
    PictureForward = 703,
    PictureDone = 704,
    PictureFilter = 705,
    PictureCancel = 706,
    PictureCall = 707,
    PictureMail = 708,
    PictureBeam = 709,
    PictureCompleteTask = 710,
    PictureDelete = 711,
    PictureDuplicate = 712,
    PictureNewAppointment = 713,
    PictureNewTask = 714,
    PictureGoTo = 715,
    PictureToday = 716,
    PictureManageFilters = 717,
    PictureExit = 718,
    PictureSettings = 719,
    PictureSearch = 720,
    PictureKeyboard = 721,
    PictureMoveUp = 722,
    PictureMoveDown = 723,
    PictureSort = 724,
    PictureShow = 725, // which tasks are shown
    PictureActivateTask = 726,
    PictureEdit = 727,
    PictureAdd = 728,
    PictureReturn = 729,
    PictureExpandAll = 730,
    PictureCollapseAll = 731,
    PictureWeb = 732,
    PictureDetails = 733,
};
