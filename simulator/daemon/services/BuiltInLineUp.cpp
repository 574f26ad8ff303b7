#include "BuiltInLineUp.h"

namespace sim {

// docs/lineup.md describes it.
const char kBuiltInLineUp[] = R"(# The built-in line-up.
transponder air 474000
  service 0xfa0000000002002d 7-1 "Norvex One" captions
    programme 00:00 90 "Night Film"
    programme 01:30 210 "Night Programme"
    programme 05:00 60 "Morning Exercise"
    programme 06:00 180 "Breakfast Television"
    programme 09:00 120 "Home and Garden"
    programme 11:00 60 "Cooking for Two"
    programme 12:00 30 "News at Noon"
    programme 12:30 150 "Afternoon Film"
    programme 15:00 120 "Quiz Hour"
    programme 17:00 120 "Regional Magazine"
    programme 19:00 15 "Weather"
    programme 19:15 60 "Evening News"
    programme 20:15 90 "Sunday Crime"
    programme 21:45 135 "Late Show"
  service 0xfa0000000002002e 7-2 "Norvex One Plus" captions
    programme 00:00 360 "Nachtprogramm – Wiederholungen"
    programme 06:00 360 "Frühstück & Überraschungen"
    programme 12:00 360 "Die große Reise"
    programme 18:00 360 "Abendschau"
  service 0xfa0000000002002f 7-3 "Norvex Info"
    programme 00:00 1440 "Rolling News"
  service 0xfa00000000020030 7-4 "Norvex Guide" barker
    programme 00:00 1440 "What Is On Elsewhere"
  service 0xfa00000000020031 7-90 "Service Channel" unlisted hidden
transponder air 482000
  service 0x1001 1-1 "City Channel" captions
    programme 00:00 360 "Nachtprogramm – Wiederholungen"
    programme 06:00 360 "Frühstück & Überraschungen"
    programme 12:00 360 "Die große Reise"
    programme 18:00 360 "Abendschau"
  service 0x1002 2-1 "Channel Two" captions
    programme 00:00 90 "Night Film"
    programme 01:30 210 "Night Programme"
    programme 05:00 60 "Morning Exercise"
    programme 06:00 180 "Breakfast Television"
    programme 09:00 120 "Home and Garden"
    programme 11:00 60 "Cooking for Two"
    programme 12:00 30 "News at Noon"
    programme 12:30 150 "Afternoon Film"
    programme 15:00 120 "Quiz Hour"
    programme 17:00 120 "Regional Magazine"
    programme 19:00 15 "Weather"
    programme 19:15 60 "Evening News"
    programme 20:15 90 "Sunday Crime"
    programme 21:45 135 "Late Show"
  service 0x1003 3-1 "Третий"
    programme 00:00 480 "Ночной канал"
    programme 08:00 480 "Новости дня"
    programme 16:00 480 "Вечерний сеанс"
  service 0x1004 4-1 "朝日の窓"
    programme 00:00 720 "朝のニュース"
    programme 12:00 720 "夜のドラマ"
  service 0x1005 5-1 "Five Sports"
    programme 05:00 300 "Football"
    programme 10:00 420 "Cycling: the Long Stage"
    programme 17:00 720 "Sports Night"
  service 0x1006 6-1 "Parliament"
    programme 10:00 120 "Two Hours a Day"
transponder air 498000
  service 0x8000000000001001 8-1 "Classic Radio"
    programme 00:00 600 "Jazz 🎷 until Dawn"
    programme 10:00 600 "Morning Concert 🎻"
    programme 20:00 240 "Live 🎤"
  service 0x8000000000001002 9-1 "Kids" captions
    programme 00:00 720
    programme 12:00 720 "Second Half of the Day"
  service 0x8000000000001003 10-1 "Film Ten" captions
  service 0x8000000000001004 11-1 "Shop Eleven"
    programme 00:00 1440 "Everything Must Go"
  service 0x8000000000001005 12-1 "Regional North"
    programme 00:00 360 "Nachtprogramm – Wiederholungen"
    programme 06:00 360 "Frühstück & Überraschungen"
    programme 12:00 360 "Die große Reise"
    programme 18:00 360 "Abendschau"
  service 0x8000000000001006 12-2 "Regional South"
  service 0x8000000000001007 13-1 "Test Signal" hidden
  service 0x8000000000001008 14-1 "Engineering" unlisted
transponder air 514000
  service 0xc000000000000001 101 "Pay One" profile=2
    programme 00:00 90 "Night Film"
    programme 01:30 210 "Night Programme"
    programme 05:00 60 "Morning Exercise"
    programme 06:00 180 "Breakfast Television"
    programme 09:00 120 "Home and Garden"
    programme 11:00 60 "Cooking for Two"
    programme 12:00 30 "News at Noon"
    programme 12:30 150 "Afternoon Film"
    programme 15:00 120 "Quiz Hour"
    programme 17:00 120 "Regional Magazine"
    programme 19:00 15 "Weather"
    programme 19:15 60 "Evening News"
    programme 20:15 90 "Sunday Crime"
    programme 21:45 135 "Late Show"
  service 0xc000000000000002 102 "Pay Two" profile=2 captions
    programme 05:00 300 "Football"
    programme 10:00 420 "Cycling: the Long Stage"
    programme 17:00 720 "Sports Night"
  service 0xc000000000000003 103 "Pay Three" profile=2
  service 0xc000000000000004 7-5 "Norvex One for Members" profile=2
    programme 00:00 360 "Nachtprogramm – Wiederholungen"
    programme 06:00 360 "Frühstück & Überraschungen"
    programme 12:00 360 "Die große Reise"
    programme 18:00 360 "Abendschau"
transponder cable 330000
  service 0x2001 1 "Cable Info" captions
    programme 00:00 1440 "Your Cable Network"
  service 0x2002 2-1 "Channel Two" captions
    programme 00:00 90 "Night Film"
    programme 01:30 210 "Night Programme"
    programme 05:00 60 "Morning Exercise"
    programme 06:00 180 "Breakfast Television"
    programme 09:00 120 "Home and Garden"
    programme 11:00 60 "Cooking for Two"
    programme 12:00 30 "News at Noon"
    programme 12:30 150 "Afternoon Film"
    programme 15:00 120 "Quiz Hour"
    programme 17:00 120 "Regional Magazine"
    programme 19:00 15 "Weather"
    programme 19:15 60 "Evening News"
    programme 20:15 90 "Sunday Crime"
    programme 21:45 135 "Late Show"
  service 0x2003 3-1 "Третий"
    programme 00:00 480 "Ночной канал"
    programme 08:00 480 "Новости дня"
    programme 16:00 480 "Вечерний сеанс"
  service 0x2004 7-1 "Norvex One" captions
    programme 00:00 90 "Night Film"
    programme 01:30 210 "Night Programme"
    programme 05:00 60 "Morning Exercise"
    programme 06:00 180 "Breakfast Television"
    programme 09:00 120 "Home and Garden"
    programme 11:00 60 "Cooking for Two"
    programme 12:00 30 "News at Noon"
    programme 12:30 150 "Afternoon Film"
    programme 15:00 120 "Quiz Hour"
    programme 17:00 120 "Regional Magazine"
    programme 19:00 15 "Weather"
    programme 19:15 60 "Evening News"
    programme 20:15 90 "Sunday Crime"
    programme 21:45 135 "Late Show"
  service 0x2005 7-2 "Norvex One Plus"
  service 0x2006 8 "Music Box"
    programme 00:00 600 "Jazz 🎷 until Dawn"
    programme 10:00 600 "Morning Concert 🎻"
    programme 20:00 240 "Live 🎤"
transponder cable 338000
  service 0x8000000000002001 20 "Documentary" captions
    programme 00:00 360 "Nachtprogramm – Wiederholungen"
    programme 06:00 360 "Frühstück & Überraschungen"
    programme 12:00 360 "Die große Reise"
    programme 18:00 360 "Abendschau"
  service 0x8000000000002002 21 "Nature" captions
    programme 00:00 720
    programme 12:00 720 "Second Half of the Day"
  service 0x8000000000002003 22 "History"
    programme 10:00 120 "Two Hours a Day"
  service 0x8000000000002004 23 "Science"
  service 0x8000000000002005 24 "Travel"
    programme 00:00 1440 "Round the World"
  service 0x8000000000002006 25 "Hidden Studio" hidden
transponder cable 346000
  service 0xfffffffffffffffe 30 "Last of All"
    programme 00:00 1440 "The Highest Number"
  service 0xfffffffffffffffd 31 "Last but One"
  service 0x2010 32 "Poker"
    programme 05:00 300 "Football"
    programme 10:00 420 "Cycling: the Long Stage"
    programme 17:00 720 "Sports Night"
  service 0x2011 33 "Chess"
    programme 00:00 1440 "Endgames"
  service 0x2012 34 "Cable Test" unlisted
  service 0x2013 101 "Cable Pay One" profile=2
    programme 00:00 90 "Night Film"
    programme 01:30 210 "Night Programme"
    programme 05:00 60 "Morning Exercise"
    programme 06:00 180 "Breakfast Television"
    programme 09:00 120 "Home and Garden"
    programme 11:00 60 "Cooking for Two"
    programme 12:00 30 "News at Noon"
    programme 12:30 150 "Afternoon Film"
    programme 15:00 120 "Quiz Hour"
    programme 17:00 120 "Regional Magazine"
    programme 19:00 15 "Weather"
    programme 19:15 60 "Evening News"
    programme 20:15 90 "Sunday Crime"
    programme 21:45 135 "Late Show"
  service 0x2014 102 "Cable Pay Two" profile=2
transponder satellite 10714000
  service 0x3001 1 "Sat Uno" captions
    programme 00:00 90 "Night Film"
    programme 01:30 210 "Night Programme"
    programme 05:00 60 "Morning Exercise"
    programme 06:00 180 "Breakfast Television"
    programme 09:00 120 "Home and Garden"
    programme 11:00 60 "Cooking for Two"
    programme 12:00 30 "News at Noon"
    programme 12:30 150 "Afternoon Film"
    programme 15:00 120 "Quiz Hour"
    programme 17:00 120 "Regional Magazine"
    programme 19:00 15 "Weather"
    programme 19:15 60 "Evening News"
    programme 20:15 90 "Sunday Crime"
    programme 21:45 135 "Late Show"
  service 0x3002 2 "Sat Due" captions
    programme 00:00 360 "Nachtprogramm – Wiederholungen"
    programme 06:00 360 "Frühstück & Überraschungen"
    programme 12:00 360 "Die große Reise"
    programme 18:00 360 "Abendschau"
  service 0x3003 3 "Sat Tre"
    programme 00:00 480 "Ночной канал"
    programme 08:00 480 "Новости дня"
    programme 16:00 480 "Вечерний сеанс"
  service 0x3004 7-1 "Norvex One International" captions
    programme 00:00 90 "Night Film"
    programme 01:30 210 "Night Programme"
    programme 05:00 60 "Morning Exercise"
    programme 06:00 180 "Breakfast Television"
    programme 09:00 120 "Home and Garden"
    programme 11:00 60 "Cooking for Two"
    programme 12:00 30 "News at Noon"
    programme 12:30 150 "Afternoon Film"
    programme 15:00 120 "Quiz Hour"
    programme 17:00 120 "Regional Magazine"
    programme 19:00 15 "Weather"
    programme 19:15 60 "Evening News"
    programme 20:15 90 "Sunday Crime"
    programme 21:45 135 "Late Show"
  service 0x3005 8 "Sat Guide" barker
    programme 00:00 1440 "Programmes of the Satellite"
transponder satellite 11347000
  service 0x9000000000003001 40 "Desert Television"
    programme 00:00 720 "朝のニュース"
    programme 12:00 720 "夜のドラマ"
  service 0x9000000000003002 41 "Ocean"
    programme 00:00 600 "Jazz 🎷 until Dawn"
    programme 10:00 600 "Morning Concert 🎻"
    programme 20:00 240 "Live 🎤"
  service 0x9000000000003003 42 "Mountain"
    programme 10:00 120 "Two Hours a Day"
  service 0x9000000000003004 43 "Forest"
  service 0x9000000000003005 44 "River" captions
    programme 00:00 720
    programme 12:00 720 "Second Half of the Day"
  service 0x9000000000003006 45 "Feed 45" hidden
  service 0x9000000000003007 46 "Feed 46" unlisted hidden
transponder satellite 12188000
  service 0x3020 50 "News Fifty" captions
    programme 00:00 1440 "Rolling News"
  service 0x3021 51 "Finance"
    programme 00:00 360 "Nachtprogramm – Wiederholungen"
    programme 06:00 360 "Frühstück & Überraschungen"
    programme 12:00 360 "Die große Reise"
    programme 18:00 360 "Abendschau"
  service 0x3022 52 "Weather Sat"
    programme 00:00 1440 "Clouds"
  service 0x3023 201 "Sat Pay One" profile=2
    programme 05:00 300 "Football"
    programme 10:00 420 "Cycling: the Long Stage"
    programme 17:00 720 "Sports Night"
  service 0x3024 202 "Sat Pay Two" profile=2
streamed air
  service 0x7000000000000001 5 "Stream Five" captions
    programme 00:00 360 "Nachtprogramm – Wiederholungen"
    programme 06:00 360 "Frühstück & Überraschungen"
    programme 12:00 360 "Die große Reise"
    programme 18:00 360 "Abendschau"
  service 0x7000000000000002 70 "Stream Seventy"
    programme 00:00 600 "Jazz 🎷 until Dawn"
    programme 10:00 600 "Morning Concert 🎻"
    programme 20:00 240 "Live 🎤"
  service 0x7000000000000003 500 "Stream Films" profile=2
    programme 00:00 90 "Night Film"
    programme 01:30 210 "Night Programme"
    programme 05:00 60 "Morning Exercise"
    programme 06:00 180 "Breakfast Television"
    programme 09:00 120 "Home and Garden"
    programme 11:00 60 "Cooking for Two"
    programme 12:00 30 "News at Noon"
    programme 12:30 150 "Afternoon Film"
    programme 15:00 120 "Quiz Hour"
    programme 17:00 120 "Regional Magazine"
    programme 19:00 15 "Weather"
    programme 19:15 60 "Evening News"
    programme 20:15 90 "Sunday Crime"
    programme 21:45 135 "Late Show"
  service 0x7000000000000004 501 "Stream Hidden" hidden
streamed cable
  service 0x7000000000000011 5 "Stream Five Cable"
    programme 00:00 480 "Ночной канал"
    programme 08:00 480 "Новости дня"
    programme 16:00 480 "Вечерний сеанс"
  service 0x7000000000000012 510 "Stream Kids" captions
    programme 00:00 720
    programme 12:00 720 "Second Half of the Day"
streamed satellite
  service 0xe000000000000021 5 "Stream Five Satellite"
    programme 00:00 720 "朝のニュース"
    programme 12:00 720 "夜のドラマ"
  service 0xe000000000000022 520 "Stream Sport"
    programme 05:00 300 "Football"
    programme 10:00 420 "Cycling: the Long Stage"
    programme 17:00 720 "Sports Night"
  service 0xe000000000000023 521 "Stream Archive"
)";

} // namespace sim
