extends SCSetVelocityAction
## Set how fast a body is moving, on a RigidBody or a CharacterBody, in 2D or 3D. A ball that is served, a bullet, a
## trampoline. A character body only goes once something moves it, such as Move Character.
