-- The blank project: every table of a Vantor Planner project, the placeholder
-- rows, and the predefined fill methods, styles and day and hour templates.
-- The build turns this file into blank.db; New Project copies blank.db.
--
-- Conventions: booleans are the text 'True' or 'False'; times are text
-- HH:MM:SS (24-hour); durations are minutes; sizes are twips (1/1440 inch);
-- colours are numbers red + 256 * green + 65536 * blue.

PRAGMA user_version = 1;

BEGIN;

-- Resources. Row 1 of each is the placeholder meaning "no resource": it is
-- never listed, and a timetable points at it for the resources it lacks.
CREATE TABLE Tutor (
  id INTEGER PRIMARY KEY,
  name TEXT,
  DisplayName TEXT,
  image TEXT,
  notes TEXT
);
CREATE TABLE Subject (
  id INTEGER PRIMARY KEY,
  name TEXT,
  length INTEGER
);
CREATE TABLE Room (
  id INTEGER PRIMARY KEY,
  name TEXT,
  Capacity INTEGER
);
CREATE TABLE Class (
  id INTEGER PRIMARY KEY,
  name TEXT
);
CREATE TABLE SubjectsTaughtByTutor (
  id INTEGER PRIMARY KEY,
  TutorID INTEGER,
  SubjectID INTEGER
);

INSERT INTO Tutor (id, name, DisplayName, image, notes) VALUES (1, '(none)', '', '', '');
INSERT INTO Subject (id, name, length) VALUES (1, '(none)', 0);
INSERT INTO Room (id, name, Capacity) VALUES (1, '(none)', 0);
INSERT INTO Class (id, name) VALUES (1, '(none)');

-- The project's days and periods, written when the project is created.
CREATE TABLE ProjectDayTitle (
  id INTEGER PRIMARY KEY,
  DOW TEXT,
  Height INTEGER,
  Width INTEGER,
  SpecialID INTEGER DEFAULT 1,
  Pos INTEGER
);
CREATE TABLE ProjectTimeTitle (
  id INTEGER PRIMARY KEY,
  StartTime TEXT,
  Duration INTEGER,
  Width INTEGER,
  Height INTEGER,
  SpecialID INTEGER DEFAULT 1,
  Pos INTEGER
);

-- Timetables: one per class, tutor or room, with the style copied in.
CREATE TABLE Timetable (
  id INTEGER PRIMARY KEY,
  Type TEXT,
  TimeOnTop TEXT DEFAULT 'True',
  Time12Hour TEXT DEFAULT 'False',
  Title TEXT,
  ClassID INTEGER DEFAULT 1,
  RoomID INTEGER DEFAULT 1,
  TutorID INTEGER DEFAULT 1,
  SubjectID INTEGER DEFAULT 1,
  TitleFont TEXT,
  TitleFontSize INTEGER,
  TitleForeground INTEGER,
  ColHeadFont TEXT,
  ColHeadFontSize INTEGER,
  ColHeadForeground INTEGER,
  RowHeadFont TEXT,
  RowHeadFontSize INTEGER,
  RowHeadForeground INTEGER,
  PeriodFont TEXT,
  PeriodFontSize INTEGER,
  PeriodForeground INTEGER,
  UnavailableBackground INTEGER,
  UnavailableForeground INTEGER
);

-- Each timetable's own copy of the project's periods and days.
CREATE TABLE TimeTitle (
  id INTEGER PRIMARY KEY,
  ProjectTimeTitleID INTEGER,
  TimetableID INTEGER,
  StartTime TEXT,
  Duration INTEGER,
  Width INTEGER,
  Height INTEGER,
  SpecialID INTEGER DEFAULT 1,
  Pos INTEGER
);
CREATE TABLE DayTitle (
  id INTEGER PRIMARY KEY,
  ProjectDayTitleID INTEGER,
  TimetableID INTEGER,
  DOW TEXT,
  Height INTEGER,
  Width INTEGER,
  SpecialID INTEGER DEFAULT 1,
  Pos INTEGER
);

-- One cell of one timetable, and what is booked into it.
CREATE TABLE Slot (
  id INTEGER PRIMARY KEY,
  TimetableID INTEGER,
  StartTime TEXT,
  Duration INTEGER,
  DOW TEXT,
  SpecialID INTEGER DEFAULT 1,
  DayTitleID INTEGER,
  TimeTitleID INTEGER
);
CREATE TABLE TutorSlot (id INTEGER PRIMARY KEY, SlotID INTEGER, TutorID INTEGER);
CREATE TABLE SubjectSlot (id INTEGER PRIMARY KEY, SlotID INTEGER, SubjectID INTEGER);
CREATE TABLE RoomSlot (id INTEGER PRIMARY KEY, SlotID INTEGER, RoomID INTEGER);
CREATE TABLE ClassSlot (id INTEGER PRIMARY KEY, SlotID INTEGER, ClassID INTEGER);

-- Auto Fill methods. Each set value runs from 0 (keep together) to 10 (spread apart).
CREATE TABLE Method (
  id INTEGER PRIMARY KEY,
  name TEXT,
  TutorSet INTEGER,
  RoomSet INTEGER,
  SubjectSet INTEGER,
  ClassSet INTEGER
);
INSERT INTO Method (id, name, TutorSet, RoomSet, SubjectSet, ClassSet)
  VALUES (1, 'Spread subjects across the week', 5, 5, 10, 5);
INSERT INTO Method (id, name, TutorSet, RoomSet, SubjectSet, ClassSet)
  VALUES (2, 'Double lessons (subjects together)', 2, 2, 0, 5);
INSERT INTO Method (id, name, TutorSet, RoomSet, SubjectSet, ClassSet)
  VALUES (3, 'Fewest room changes', 5, 0, 7, 5);
-- Row 4 is the built-in balanced method: never listed, so never edited or removed.
INSERT INTO Method (id, name, TutorSet, RoomSet, SubjectSet, ClassSet)
  VALUES (4, 'Balanced (built in)', 5, 5, 5, 5);
INSERT INTO Method (id, name, TutorSet, RoomSet, SubjectSet, ClassSet)
  VALUES (5, 'Spread tutors and rooms apart', 10, 10, 8, 5);

-- Timetable styles offered by the new-timetable wizard (read only).
CREATE TABLE Style (
  id INTEGER PRIMARY KEY,
  name TEXT,
  UnavailableBackground INTEGER,
  UnavailableForeground INTEGER,
  TitleFont TEXT,
  TitleFontSize INTEGER,
  TitleForeground INTEGER,
  ColHeadFont TEXT,
  ColHeadFontSize INTEGER,
  ColHeadForeground INTEGER,
  RowHeadFont TEXT,
  RowHeadFontSize INTEGER,
  RowHeadForeground INTEGER,
  PeriodFont TEXT,
  PeriodFontSize INTEGER,
  PeriodForeground INTEGER
);
-- Colours: 16446688 = light blue (224,244,250), 0 = black, 8388608 = navy,
-- 6697728 = dark blue (0,51,102), 4210752 = dark grey, 13158600 = light grey (200,200,200),
-- 128 = maroon, 25600 = dark green.
INSERT INTO Style VALUES (1, 'Standard', 16446688, 0,
  'DejaVu Sans', 14, 0, 'DejaVu Sans', 9, 0, 'DejaVu Sans', 9, 0, 'DejaVu Sans', 8, 0);
INSERT INTO Style VALUES (2, 'Classic (serif)', 13158600, 0,
  'DejaVu Serif', 16, 8388608, 'DejaVu Serif', 10, 8388608, 'DejaVu Serif', 10, 8388608,
  'DejaVu Serif', 9, 0);
INSERT INTO Style VALUES (3, 'Large print', 16446688, 0,
  'DejaVu Sans', 18, 0, 'DejaVu Sans', 12, 0, 'DejaVu Sans', 12, 0, 'DejaVu Sans', 11, 0);
INSERT INTO Style VALUES (4, 'Navy and blue', 16446688, 4210752,
  'DejaVu Sans', 14, 8388608, 'DejaVu Sans', 9, 6697728, 'DejaVu Sans', 9, 6697728,
  'DejaVu Sans', 8, 4210752);
INSERT INTO Style VALUES (5, 'Compact', 13158600, 0,
  'DejaVu Sans Condensed', 12, 0, 'DejaVu Sans Condensed', 8, 0, 'DejaVu Sans Condensed', 8, 0,
  'DejaVu Sans Condensed', 7, 0);

-- Project wizard templates: named sets of days and of period start times.
CREATE TABLE DOWTemplate (id INTEGER PRIMARY KEY, name TEXT);
CREATE TABLE DOWTemplateItem (id INTEGER PRIMARY KEY, DOWTemplateID INTEGER, name TEXT, Pos INTEGER);
CREATE TABLE HourTemplate (id INTEGER PRIMARY KEY, name TEXT);
CREATE TABLE HourTemplateItem (id INTEGER PRIMARY KEY, HourTemplateID INTEGER, name TEXT, Pos INTEGER);

INSERT INTO DOWTemplate (id, name) VALUES (1, 'Monday to Friday');
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (1, 'Monday', 1);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (1, 'Tuesday', 2);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (1, 'Wednesday', 3);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (1, 'Thursday', 4);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (1, 'Friday', 5);

INSERT INTO DOWTemplate (id, name) VALUES (2, 'Monday to Saturday');
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (2, 'Monday', 1);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (2, 'Tuesday', 2);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (2, 'Wednesday', 3);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (2, 'Thursday', 4);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (2, 'Friday', 5);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (2, 'Saturday', 6);

INSERT INTO DOWTemplate (id, name) VALUES (3, 'Sunday to Thursday');
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (3, 'Sunday', 1);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (3, 'Monday', 2);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (3, 'Tuesday', 3);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (3, 'Wednesday', 4);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (3, 'Thursday', 5);

INSERT INTO DOWTemplate (id, name) VALUES (4, 'Two-week cycle (Week A and Week B)');
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (4, 'Monday A', 1);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (4, 'Tuesday A', 2);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (4, 'Wednesday A', 3);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (4, 'Thursday A', 4);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (4, 'Friday A', 5);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (4, 'Monday B', 6);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (4, 'Tuesday B', 7);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (4, 'Wednesday B', 8);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (4, 'Thursday B', 9);
INSERT INTO DOWTemplateItem (DOWTemplateID, name, Pos) VALUES (4, 'Friday B', 10);

-- Hour templates list period boundaries: each time but the last starts a
-- period that lasts until the next time.
INSERT INTO HourTemplate (id, name) VALUES (1, 'Secondary: six 50-minute periods from 8:50am');
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (1, '08:50:00', 1);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (1, '09:40:00', 2);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (1, '10:30:00', 3);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (1, '11:20:00', 4);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (1, '12:10:00', 5);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (1, '13:00:00', 6);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (1, '13:50:00', 7);

INSERT INTO HourTemplate (id, name) VALUES (2, 'Secondary: eight 40-minute periods from 8:40am');
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (2, '08:40:00', 1);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (2, '09:20:00', 2);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (2, '10:00:00', 3);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (2, '10:40:00', 4);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (2, '11:20:00', 5);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (2, '12:00:00', 6);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (2, '12:40:00', 7);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (2, '13:20:00', 8);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (2, '14:00:00', 9);

INSERT INTO HourTemplate (id, name) VALUES (3, 'Primary: five 75-minute sessions from 8:45am');
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (3, '08:45:00', 1);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (3, '10:00:00', 2);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (3, '11:15:00', 3);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (3, '12:30:00', 4);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (3, '13:45:00', 5);
INSERT INTO HourTemplateItem (HourTemplateID, name, Pos) VALUES (3, '15:00:00', 6);

-- Indexes for every join and filter the program runs.
CREATE INDEX idxTutorSlotTutor ON TutorSlot (TutorID, SlotID);
CREATE INDEX idxTutorSlotSlot ON TutorSlot (SlotID, TutorID);
CREATE INDEX idxSubjectSlotSubject ON SubjectSlot (SubjectID, SlotID);
CREATE INDEX idxSubjectSlotSlot ON SubjectSlot (SlotID, SubjectID);
CREATE INDEX idxRoomSlotRoom ON RoomSlot (RoomID, SlotID);
CREATE INDEX idxRoomSlotSlot ON RoomSlot (SlotID, RoomID);
CREATE INDEX idxClassSlotClass ON ClassSlot (ClassID, SlotID);
CREATE INDEX idxClassSlotSlot ON ClassSlot (SlotID, ClassID);
CREATE INDEX idxSlotTimetable ON Slot (TimetableID, DayTitleID, TimeTitleID);
CREATE INDEX idxSlotDayTime ON Slot (DayTitleID, TimeTitleID);
CREATE INDEX idxDayTitleTimetable ON DayTitle (TimetableID, ProjectDayTitleID);
CREATE INDEX idxDayTitleProject ON DayTitle (ProjectDayTitleID);
CREATE INDEX idxTimeTitleTimetable ON TimeTitle (TimetableID, ProjectTimeTitleID);
CREATE INDEX idxTimeTitleProject ON TimeTitle (ProjectTimeTitleID);
CREATE INDEX idxTimetableType ON Timetable (Type, ClassID, TutorID, RoomID);
CREATE INDEX idxSubjectsTaughtTutor ON SubjectsTaughtByTutor (TutorID, SubjectID);
CREATE INDEX idxSubjectsTaughtSubject ON SubjectsTaughtByTutor (SubjectID);
CREATE INDEX idxDOWTemplateItem ON DOWTemplateItem (DOWTemplateID, Pos);
CREATE INDEX idxHourTemplateItem ON HourTemplateItem (HourTemplateID, Pos);

COMMIT;
