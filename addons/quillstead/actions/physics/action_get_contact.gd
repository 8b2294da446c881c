extends SCGetContactAction
## Find out where a rigid body is touching something and how hard. For a vase that breaks when it lands hard, or
## sparks where a car scrapes along a wall. On Every Frame the events are sent only when the answer changes.
