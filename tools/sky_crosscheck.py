#!/usr/bin/python3
"""Independent altitudes and azimuths of bright stars for the sky routines' tests.

Run once by hand (the tests only read the CSV it writes):

    /usr/bin/python3 tools/sky_crosscheck.py > tests/sky/data/crosscheck.csv

Needs Debian's python3-astropy. Works offline: no IERS download, astropy's own tables,
no refraction. Azimuth is turned from astropy's (north through east) into ours (south
through west, -90 to 270).
"""
import sys
import warnings

from astropy.utils import iers

iers.conf.auto_download = False
iers.conf.auto_max_age = None
iers.conf.iers_degraded_accuracy = "ignore"

import astropy
import astropy.units as u
from astropy.coordinates import AltAz, EarthLocation, SkyCoord
from astropy.time import Time

warnings.simplefilter("ignore")

# Name, RA hours, RA minutes, Dec sign, Dec degrees, Dec minutes (J2000), as a catalog row
# holds them: minutes carry the seconds as a fraction.
STARS = [
    ("Vega", 18, 36 + 56.34 / 60, "+", 38, 47 + 1.3 / 60),
    ("Sirius", 6, 45 + 8.92 / 60, "-", 16, 42 + 58.0 / 60),
    ("Polaris", 2, 31 + 49.09 / 60, "+", 89, 15 + 50.8 / 60),
    ("Betelgeuse", 5, 55 + 10.31 / 60, "+", 7, 24 + 25.4 / 60),
    ("Arcturus", 14, 15 + 39.67 / 60, "+", 19, 10 + 56.7 / 60),
    ("Canopus", 6, 23 + 57.11 / 60, "-", 52, 41 + 44.4 / 60),
    ("Rigel", 5, 14 + 32.27 / 60, "-", 8, 12 + 5.9 / 60),
    ("Altair", 19, 50 + 47.00 / 60, "+", 8, 52 + 6.0 / 60),
    ("Acrux", 12, 26 + 35.90 / 60, "-", 63, 5 + 56.7 / 60),
    ("Antares", 16, 29 + 24.46 / 60, "-", 26, 25 + 55.2 / 60),
]

# Site name, longitude hemisphere, degrees, minutes, latitude hemisphere, degrees, minutes,
# local date, local time, offset of local time from UTC in hours (east positive).
MOMENTS = [
    ("Okinawa", "E", 127, 40, "N", 26, 20, "2026-11-21", "20:30", 9.0),
    ("Denver", "W", 104, 59, "N", 39, 44, "2026-07-04", "22:15", -6.0),
    ("Sydney", "E", 151, 12, "S", 33, 52, "2026-11-21", "23:50", 11.0),
    ("Santiago", "W", 70, 40, "S", 33, 27, "2031-03-02", "04:45", -3.0),
    ("London", "W", 0, 7, "N", 51, 30, "2003-06-15", "23:10", 1.0),
    ("New Delhi", "E", 77, 13, "N", 28, 37, "2026-02-10", "19:05", 5.5),
    ("Reykjavik", "W", 21, 56, "N", 64, 8, "2026-12-24", "01:30", 0.0),
    ("Cape Town", "E", 18, 25, "S", 33, 55, "2027-05-18", "21:00", 2.0),
]


def signed(hemi_positive, hemi, deg, minutes):
    v = deg + minutes / 60
    return v if hemi == hemi_positive else -v


def main():
    out = sys.stdout
    out.write("# made by: /usr/bin/python3 tools/sky_crosscheck.py > tests/sky/data/crosscheck.csv\n")
    out.write(f"# astropy {astropy.__version__}, ICRS to AltAz, no refraction, built-in IERS tables\n")
    out.write("site,longHemi,longDeg,longMin,latHemi,latDeg,latMin,date,time,utcOffset,"
              "star,raHours,raMinutes,decSign,decDegrees,decMinutes,altitude,azimuth\n")
    for site, lh, ld, lm, ah, ad, am, date, time, offset in MOMENTS:
        loc = EarthLocation(lon=signed("E", lh, ld, lm) * u.deg, lat=signed("N", ah, ad, am) * u.deg,
                            height=0 * u.m)
        local = Time(f"{date}T{time}:00", scale="utc")
        when = local - offset * u.hour
        frame = AltAz(obstime=when, location=loc)
        for name, rah, ram, sign, dd, dm in STARS:
            ram, dm = round(ram, 4), round(dm, 4)
            dec = dd + dm / 60
            if sign == "-":
                dec = -dec
            star = SkyCoord(ra=(rah + ram / 60) * 15 * u.deg, dec=dec * u.deg, frame="icrs")
            aa = star.transform_to(frame)
            az = aa.az.deg - 180
            if az < -90:
                az += 360
            out.write(f"{site},{lh},{ld},{lm},{ah},{ad},{am},{date},{time},{offset:g},"
                      f"{name},{rah},{ram:.4f},{sign},{dd},{dm:.4f},{aa.alt.deg:.4f},{az:.4f}\n")


if __name__ == "__main__":
    main()
