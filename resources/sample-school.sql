-- Millbrook Secondary: a small school to explore the program with. The build
-- turns this file into sample-school.VNPL: it adds the tutors, subjects,
-- rooms and classes below to a copy of blank.db, then sets up the week and
-- creates the timetables listed in SampleTimetable, and puts each lesson of
-- SampleLesson into its timetable by ticking, as a user would, so lessons of
-- tutors and rooms with timetables of their own are mirrored into the
-- classes' timetables. No tutor or room is in two places at once.

INSERT INTO Tutor (name, DisplayName, image, notes) VALUES
  ('Mrs Adeyemi', 'ADE', '', ''),
  ('Mr Brown', 'BRN', '', ''),
  ('Dr Chen', 'CHN', '', ''),
  ('Ms Dubois', 'DUB', '', ''),
  ('Mr Evans', 'EVA', '', ''),
  ('Mrs Fischer', 'FIS', '', ''),
  ('Mr García', 'GAR', '', ''),
  ('Ms Hughes', 'HUG', '', ''),
  ('Mr Iqbal', 'IQB', '', ''),
  ('Mrs Jensen', 'JEN', '', ''),
  ('Mr Kowalski', 'KOW', '', ''),
  ('Ms O''Hara', 'OHA', '', '');

INSERT INTO Subject (name, length) VALUES
  ('English', 1),
  ('Maths', 1),
  ('Science', 1),
  ('History', 1),
  ('Geography', 1),
  ('French', 1),
  ('Art', 1),
  ('Music', 1),
  ('PE', 1),
  ('Computing', 1);

INSERT INTO Room (name, Capacity) VALUES
  ('Room 1', 30),
  ('Room 2', 30),
  ('Room 3', 30),
  ('Room 4', 28),
  ('Science Lab', 24),
  ('Art Studio', 24),
  ('Music Room', 24),
  ('Sports Hall', 60);

INSERT INTO Class (name) VALUES
  ('7A'),
  ('7B'),
  ('8A'),
  ('8B'),
  ('9A'),
  ('9B');

-- Who can teach what.
INSERT INTO SubjectsTaughtByTutor (TutorID, SubjectID)
  SELECT t.id, s.id FROM (
SELECT 'Mrs Adeyemi' AS tutor, 'English' AS subject
    UNION ALL SELECT 'Mr Brown', 'Maths'
    UNION ALL SELECT 'Dr Chen', 'Science'
    UNION ALL SELECT 'Ms Dubois', 'French'
    UNION ALL SELECT 'Mr Evans', 'History'
    UNION ALL SELECT 'Mr Evans', 'Geography'
    UNION ALL SELECT 'Mrs Fischer', 'Geography'
    UNION ALL SELECT 'Mrs Fischer', 'PE'
    UNION ALL SELECT 'Mr García', 'Art'
    UNION ALL SELECT 'Ms Hughes', 'English'
    UNION ALL SELECT 'Ms Hughes', 'Computing'
    UNION ALL SELECT 'Mr Iqbal', 'Maths'
    UNION ALL SELECT 'Mr Iqbal', 'Computing'
    UNION ALL SELECT 'Mrs Jensen', 'Science'
    UNION ALL SELECT 'Mr Kowalski', 'Music'
    UNION ALL SELECT 'Ms O''Hara', 'PE'
  ) AS p JOIN Tutor t ON t.name = p.tutor JOIN Subject s ON s.name = p.subject;

-- The week: the days, and the times the periods start (the last is when the
-- day ends). The period starting at 12:30 is lunch.
CREATE TEMP TABLE SampleDay (pos INTEGER, name TEXT);
INSERT INTO SampleDay VALUES (1, 'Monday'), (2, 'Tuesday'), (3, 'Wednesday'), (4, 'Thursday'),
  (5, 'Friday');
CREATE TEMP TABLE SampleTime (pos INTEGER, start TEXT, lunch INTEGER);
INSERT INTO SampleTime VALUES (1, '08:50', 0), (2, '09:45', 0), (3, '10:40', 0), (4, '11:35', 0),
  (5, '12:30', 1), (6, '13:25', 0), (7, '14:20', 0), (8, '15:15', 0);

-- The timetables, by their class, tutor or room.
CREATE TEMP TABLE SampleTimetable (type TEXT, owner TEXT);
INSERT INTO SampleTimetable VALUES
  ('Class', '7A'),
  ('Class', '7B'),
  ('Class', '8A'),
  ('Class', '8B'),
  ('Class', '9A'),
  ('Class', '9B'),
  ('Tutor', 'Mr Brown'),
  ('Tutor', 'Dr Chen'),
  ('Tutor', 'Ms Dubois'),
  ('Tutor', 'Mr Evans'),
  ('Room', 'Sports Hall'),
  ('Room', 'Art Studio');

-- Each class's week: day, period (1-7; 5 is lunch), tutor, subject, room.
CREATE TEMP TABLE SampleLesson (class TEXT, day TEXT, period INTEGER, tutor TEXT, subject TEXT,
  room TEXT);
INSERT INTO SampleLesson VALUES
  ('7A', 'Monday', 1, 'Mr Iqbal', 'Maths', 'Room 4'),
  ('7A', 'Monday', 2, 'Ms Hughes', 'English', 'Room 4'),
  ('7A', 'Monday', 3, 'Mr Iqbal', 'Maths', 'Room 3'),
  ('7A', 'Monday', 4, 'Ms Hughes', 'English', 'Room 3'),
  ('7A', 'Monday', 6, 'Mrs Jensen', 'Science', 'Science Lab'),
  ('7A', 'Monday', 7, 'Ms Dubois', 'French', 'Room 2'),
  ('7A', 'Tuesday', 1, 'Ms Hughes', 'English', 'Room 4'),
  ('7A', 'Tuesday', 2, 'Mr Iqbal', 'Maths', 'Room 1'),
  ('7A', 'Tuesday', 3, 'Mrs Jensen', 'Science', 'Science Lab'),
  ('7A', 'Tuesday', 4, 'Mr García', 'Art', 'Art Studio'),
  ('7A', 'Tuesday', 6, 'Mr Evans', 'Geography', 'Room 3'),
  ('7A', 'Tuesday', 7, 'Mr Kowalski', 'Music', 'Music Room'),
  ('7A', 'Wednesday', 1, 'Ms Hughes', 'Computing', 'Room 1'),
  ('7A', 'Wednesday', 2, 'Ms Hughes', 'English', 'Room 4'),
  ('7A', 'Wednesday', 3, 'Mr Iqbal', 'Maths', 'Room 4'),
  ('7A', 'Wednesday', 4, 'Ms Dubois', 'French', 'Room 1'),
  ('7A', 'Wednesday', 6, 'Mr Evans', 'History', 'Room 4'),
  ('7A', 'Wednesday', 7, 'Mr García', 'Art', 'Art Studio'),
  ('7A', 'Thursday', 1, 'Mrs Jensen', 'Science', 'Science Lab'),
  ('7A', 'Thursday', 2, 'Ms Hughes', 'English', 'Room 2'),
  ('7A', 'Thursday', 3, 'Mrs Fischer', 'PE', 'Sports Hall'),
  ('7A', 'Thursday', 4, 'Mr Kowalski', 'Music', 'Music Room'),
  ('7A', 'Thursday', 6, 'Ms Dubois', 'French', 'Room 3'),
  ('7A', 'Thursday', 7, 'Ms Hughes', 'Computing', 'Room 2'),
  ('7A', 'Friday', 1, 'Mrs Fischer', 'PE', 'Sports Hall'),
  ('7A', 'Friday', 2, 'Mr Iqbal', 'Maths', 'Room 4'),
  ('7A', 'Friday', 3, 'Mr Evans', 'History', 'Room 1'),
  ('7A', 'Friday', 4, 'Mrs Jensen', 'Science', 'Science Lab'),
  ('7A', 'Friday', 6, 'Mr Evans', 'Geography', 'Room 1');
INSERT INTO SampleLesson VALUES
  ('7B', 'Monday', 1, 'Ms Dubois', 'French', 'Room 3'),
  ('7B', 'Monday', 2, 'Dr Chen', 'Science', 'Science Lab'),
  ('7B', 'Monday', 3, 'Mrs Adeyemi', 'English', 'Room 1'),
  ('7B', 'Monday', 4, 'Ms O''Hara', 'PE', 'Sports Hall'),
  ('7B', 'Monday', 6, 'Mr García', 'Art', 'Art Studio'),
  ('7B', 'Monday', 7, 'Mrs Fischer', 'Geography', 'Room 4'),
  ('7B', 'Tuesday', 1, 'Ms Dubois', 'French', 'Room 3'),
  ('7B', 'Tuesday', 2, 'Mrs Adeyemi', 'English', 'Room 4'),
  ('7B', 'Tuesday', 3, 'Mr Brown', 'Maths', 'Room 2'),
  ('7B', 'Tuesday', 4, 'Mrs Adeyemi', 'English', 'Room 2'),
  ('7B', 'Tuesday', 6, 'Ms O''Hara', 'PE', 'Sports Hall'),
  ('7B', 'Tuesday', 7, 'Mr Brown', 'Maths', 'Room 1'),
  ('7B', 'Wednesday', 1, 'Mr Iqbal', 'Computing', 'Room 3'),
  ('7B', 'Wednesday', 2, 'Mr Brown', 'Maths', 'Room 3'),
  ('7B', 'Wednesday', 3, 'Dr Chen', 'Science', 'Science Lab'),
  ('7B', 'Wednesday', 4, 'Mr Kowalski', 'Music', 'Music Room'),
  ('7B', 'Wednesday', 6, 'Mrs Adeyemi', 'English', 'Room 2'),
  ('7B', 'Wednesday', 7, 'Mr Evans', 'History', 'Room 3'),
  ('7B', 'Thursday', 1, 'Mr Evans', 'History', 'Room 4'),
  ('7B', 'Thursday', 2, 'Dr Chen', 'Science', 'Science Lab'),
  ('7B', 'Thursday', 3, 'Mr Brown', 'Maths', 'Room 4'),
  ('7B', 'Thursday', 4, 'Ms Dubois', 'French', 'Room 4'),
  ('7B', 'Thursday', 6, 'Mrs Adeyemi', 'English', 'Room 2'),
  ('7B', 'Thursday', 7, 'Mr Iqbal', 'Computing', 'Room 1'),
  ('7B', 'Friday', 1, 'Mr Kowalski', 'Music', 'Music Room'),
  ('7B', 'Friday', 2, 'Mr García', 'Art', 'Art Studio'),
  ('7B', 'Friday', 3, 'Mrs Fischer', 'Geography', 'Room 3'),
  ('7B', 'Friday', 4, 'Mr Brown', 'Maths', 'Room 3'),
  ('7B', 'Friday', 6, 'Dr Chen', 'Science', 'Science Lab');
INSERT INTO SampleLesson VALUES
  ('8A', 'Monday', 1, 'Mrs Fischer', 'PE', 'Sports Hall'),
  ('8A', 'Monday', 2, 'Mrs Adeyemi', 'English', 'Room 1'),
  ('8A', 'Monday', 3, 'Ms Hughes', 'Computing', 'Room 4'),
  ('8A', 'Monday', 4, 'Ms Dubois', 'French', 'Room 4'),
  ('8A', 'Monday', 6, 'Mr Brown', 'Maths', 'Room 1'),
  ('8A', 'Monday', 7, 'Dr Chen', 'Science', 'Science Lab'),
  ('8A', 'Tuesday', 1, 'Mr García', 'Art', 'Art Studio'),
  ('8A', 'Tuesday', 2, 'Mr Kowalski', 'Music', 'Music Room'),
  ('8A', 'Tuesday', 3, 'Mrs Adeyemi', 'English', 'Room 1'),
  ('8A', 'Tuesday', 4, 'Mr Evans', 'History', 'Room 3'),
  ('8A', 'Tuesday', 6, 'Dr Chen', 'Science', 'Science Lab'),
  ('8A', 'Tuesday', 7, 'Ms Dubois', 'French', 'Room 4'),
  ('8A', 'Wednesday', 1, 'Mr Brown', 'Maths', 'Room 2'),
  ('8A', 'Wednesday', 2, 'Mrs Adeyemi', 'English', 'Room 1'),
  ('8A', 'Wednesday', 3, 'Mr Brown', 'Maths', 'Room 2'),
  ('8A', 'Wednesday', 4, 'Mrs Adeyemi', 'English', 'Room 4'),
  ('8A', 'Wednesday', 6, 'Ms Hughes', 'Computing', 'Room 1'),
  ('8A', 'Wednesday', 7, 'Dr Chen', 'Science', 'Science Lab'),
  ('8A', 'Thursday', 1, 'Mrs Fischer', 'Geography', 'Room 3'),
  ('8A', 'Thursday', 2, 'Mrs Fischer', 'PE', 'Sports Hall'),
  ('8A', 'Thursday', 3, 'Mrs Adeyemi', 'English', 'Room 2'),
  ('8A', 'Thursday', 4, 'Mr García', 'Art', 'Art Studio'),
  ('8A', 'Thursday', 6, 'Mr Brown', 'Maths', 'Room 4'),
  ('8A', 'Thursday', 7, 'Ms Dubois', 'French', 'Room 3'),
  ('8A', 'Friday', 1, 'Dr Chen', 'Science', 'Science Lab'),
  ('8A', 'Friday', 2, 'Mr Kowalski', 'Music', 'Music Room'),
  ('8A', 'Friday', 3, 'Mr Brown', 'Maths', 'Room 2'),
  ('8A', 'Friday', 4, 'Mr Evans', 'History', 'Room 4'),
  ('8A', 'Friday', 6, 'Mrs Fischer', 'Geography', 'Room 2');
INSERT INTO SampleLesson VALUES
  ('8B', 'Monday', 1, 'Mr Brown', 'Maths', 'Room 1'),
  ('8B', 'Monday', 2, 'Mr Brown', 'Maths', 'Room 2'),
  ('8B', 'Monday', 3, 'Mrs Jensen', 'Science', 'Science Lab'),
  ('8B', 'Monday', 4, 'Mrs Adeyemi', 'English', 'Room 2'),
  ('8B', 'Monday', 6, 'Mr Kowalski', 'Music', 'Music Room'),
  ('8B', 'Monday', 7, 'Mr García', 'Art', 'Art Studio'),
  ('8B', 'Tuesday', 1, 'Mr Brown', 'Maths', 'Room 1'),
  ('8B', 'Tuesday', 2, 'Mrs Jensen', 'Science', 'Science Lab'),
  ('8B', 'Tuesday', 3, 'Ms Dubois', 'French', 'Room 4'),
  ('8B', 'Tuesday', 4, 'Mrs Fischer', 'Geography', 'Room 4'),
  ('8B', 'Tuesday', 6, 'Mrs Adeyemi', 'English', 'Room 1'),
  ('8B', 'Tuesday', 7, 'Mr Evans', 'History', 'Room 3'),
  ('8B', 'Wednesday', 1, 'Mrs Adeyemi', 'English', 'Room 4'),
  ('8B', 'Wednesday', 2, 'Mrs Jensen', 'Science', 'Science Lab'),
  ('8B', 'Wednesday', 3, 'Mr García', 'Art', 'Art Studio'),
  ('8B', 'Wednesday', 4, 'Ms O''Hara', 'PE', 'Sports Hall'),
  ('8B', 'Wednesday', 6, 'Mrs Fischer', 'Geography', 'Room 3'),
  ('8B', 'Wednesday', 7, 'Ms Dubois', 'French', 'Room 1'),
  ('8B', 'Thursday', 1, 'Mr Brown', 'Maths', 'Room 2'),
  ('8B', 'Thursday', 2, 'Mrs Adeyemi', 'English', 'Room 4'),
  ('8B', 'Thursday', 3, 'Ms Dubois', 'French', 'Room 3'),
  ('8B', 'Thursday', 4, 'Mr Brown', 'Maths', 'Room 3'),
  ('8B', 'Thursday', 6, 'Ms Hughes', 'Computing', 'Room 1'),
  ('8B', 'Thursday', 7, 'Mr Kowalski', 'Music', 'Music Room'),
  ('8B', 'Friday', 1, 'Mr Evans', 'History', 'Room 2'),
  ('8B', 'Friday', 2, 'Mrs Adeyemi', 'English', 'Room 2'),
  ('8B', 'Friday', 3, 'Ms O''Hara', 'PE', 'Sports Hall'),
  ('8B', 'Friday', 6, 'Ms Hughes', 'Computing', 'Room 3'),
  ('8B', 'Friday', 7, 'Mrs Jensen', 'Science', 'Science Lab');
INSERT INTO SampleLesson VALUES
  ('9A', 'Monday', 1, 'Mrs Adeyemi', 'English', 'Room 2'),
  ('9A', 'Monday', 2, 'Ms O''Hara', 'PE', 'Sports Hall'),
  ('9A', 'Monday', 3, 'Mr Brown', 'Maths', 'Room 2'),
  ('9A', 'Monday', 4, 'Dr Chen', 'Science', 'Science Lab'),
  ('9A', 'Monday', 6, 'Ms Dubois', 'French', 'Room 2'),
  ('9A', 'Monday', 7, 'Mr Brown', 'Maths', 'Room 1'),
  ('9A', 'Tuesday', 1, 'Mrs Adeyemi', 'English', 'Room 2'),
  ('9A', 'Tuesday', 2, 'Mr Brown', 'Maths', 'Room 2'),
  ('9A', 'Tuesday', 3, 'Mr Evans', 'Geography', 'Room 3'),
  ('9A', 'Tuesday', 4, 'Dr Chen', 'Science', 'Science Lab'),
  ('9A', 'Tuesday', 6, 'Ms Dubois', 'French', 'Room 2'),
  ('9A', 'Tuesday', 7, 'Mr García', 'Art', 'Art Studio'),
  ('9A', 'Wednesday', 1, 'Mr Kowalski', 'Music', 'Music Room'),
  ('9A', 'Wednesday', 2, 'Mr Evans', 'History', 'Room 2'),
  ('9A', 'Wednesday', 3, 'Mrs Adeyemi', 'English', 'Room 3'),
  ('9A', 'Wednesday', 4, 'Mr Brown', 'Maths', 'Room 3'),
  ('9A', 'Wednesday', 6, 'Dr Chen', 'Science', 'Science Lab'),
  ('9A', 'Wednesday', 7, 'Mr Iqbal', 'Computing', 'Room 4'),
  ('9A', 'Thursday', 1, 'Ms O''Hara', 'PE', 'Sports Hall'),
  ('9A', 'Thursday', 2, 'Mr Evans', 'History', 'Room 1'),
  ('9A', 'Thursday', 3, 'Mr García', 'Art', 'Art Studio'),
  ('9A', 'Thursday', 4, 'Mrs Adeyemi', 'English', 'Room 2'),
  ('9A', 'Thursday', 6, 'Dr Chen', 'Science', 'Science Lab'),
  ('9A', 'Friday', 1, 'Ms Dubois', 'French', 'Room 1'),
  ('9A', 'Friday', 2, 'Mr Evans', 'Geography', 'Room 3'),
  ('9A', 'Friday', 3, 'Mr Kowalski', 'Music', 'Music Room'),
  ('9A', 'Friday', 4, 'Mr Iqbal', 'Computing', 'Room 2'),
  ('9A', 'Friday', 6, 'Mrs Adeyemi', 'English', 'Room 4'),
  ('9A', 'Friday', 7, 'Mr Brown', 'Maths', 'Room 1');
INSERT INTO SampleLesson VALUES
  ('9B', 'Monday', 1, 'Dr Chen', 'Science', 'Science Lab'),
  ('9B', 'Monday', 2, 'Ms Dubois', 'French', 'Room 3'),
  ('9B', 'Monday', 3, 'Mr Kowalski', 'Music', 'Music Room'),
  ('9B', 'Monday', 4, 'Mr Brown', 'Maths', 'Room 1'),
  ('9B', 'Monday', 6, 'Mrs Adeyemi', 'English', 'Room 3'),
  ('9B', 'Monday', 7, 'Mrs Adeyemi', 'English', 'Room 3'),
  ('9B', 'Tuesday', 1, 'Dr Chen', 'Science', 'Science Lab'),
  ('9B', 'Tuesday', 2, 'Mr Evans', 'History', 'Room 3'),
  ('9B', 'Tuesday', 3, 'Mr García', 'Art', 'Art Studio'),
  ('9B', 'Tuesday', 4, 'Mr Brown', 'Maths', 'Room 1'),
  ('9B', 'Tuesday', 6, 'Mr Brown', 'Maths', 'Room 4'),
  ('9B', 'Tuesday', 7, 'Mrs Adeyemi', 'English', 'Room 2'),
  ('9B', 'Wednesday', 1, 'Dr Chen', 'Science', 'Science Lab'),
  ('9B', 'Wednesday', 2, 'Ms O''Hara', 'PE', 'Sports Hall'),
  ('9B', 'Wednesday', 3, 'Mrs Fischer', 'Geography', 'Room 1'),
  ('9B', 'Wednesday', 4, 'Ms Hughes', 'Computing', 'Room 2'),
  ('9B', 'Wednesday', 6, 'Mr García', 'Art', 'Art Studio'),
  ('9B', 'Wednesday', 7, 'Mr Brown', 'Maths', 'Room 2'),
  ('9B', 'Thursday', 1, 'Mrs Adeyemi', 'English', 'Room 1'),
  ('9B', 'Thursday', 2, 'Ms Dubois', 'French', 'Room 3'),
  ('9B', 'Thursday', 3, 'Ms Hughes', 'Computing', 'Room 1'),
  ('9B', 'Thursday', 4, 'Mr Evans', 'History', 'Room 1'),
  ('9B', 'Thursday', 6, 'Mr Kowalski', 'Music', 'Music Room'),
  ('9B', 'Thursday', 7, 'Mrs Adeyemi', 'English', 'Room 4'),
  ('9B', 'Friday', 1, 'Mr Brown', 'Maths', 'Room 3'),
  ('9B', 'Friday', 2, 'Ms Dubois', 'French', 'Room 1'),
  ('9B', 'Friday', 3, 'Dr Chen', 'Science', 'Science Lab'),
  ('9B', 'Friday', 4, 'Mrs Fischer', 'Geography', 'Room 1'),
  ('9B', 'Friday', 6, 'Ms O''Hara', 'PE', 'Sports Hall');
