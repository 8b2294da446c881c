extends SCFreezeAction
## Hold a RigidBody still where it is, or let it go again, or switch gravity off and on for it. A bridge that falls
## once it is stepped on, a crate that is carried, an astronaut.
