extends SCBulletPatternAction
## Fire a pattern of bullets, from one aimed shot to a shotgun fan, a ring, a spiral that turns with each shot, or a
## wall with a gap to slip through.
