extends SCRandomVectorAction
## Put a random direction, or a random place, into a Vector variable. Use it for where the next coin appears, which
## way a spark flies or where a sheep wanders to.
