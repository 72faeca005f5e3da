// What buttons on the page can call, through context3D of the annotation.

function play3D() {
    return orvelPlayer ? orvelPlayer.play() : undefined;
}

function pause3D() {
    return orvelPlayer ? orvelPlayer.pause() : undefined;
}

function isPlaying3D() {
    return orvelPlayer ? orvelPlayer.isPlaying() : false;
}

function stop3D() {
    return orvelPlayer ? orvelPlayer.stop() : undefined;
}

function step3D(count) {
    return orvelPlayer ? orvelPlayer.step(count) : undefined;
}

function showFrame3D(frame) {
    return orvelPlayer ? orvelPlayer.goTo(frame) : undefined;
}

function showState3D(name) {
    return orvelPlayer ? orvelPlayer.showState(name) : false;
}

function playSequence3D(name) {
    return orvelPlayer ? orvelPlayer.playSequence(name) : false;
}

function followCamera3D(wanted) {
    return orvelPlayer ? orvelPlayer.follow(wanted) : undefined;
}

function states3D() {
    return orvelPlayer ? orvelPlayer.states() : [];
}

function sequences3D() {
    return orvelPlayer ? orvelPlayer.sequences() : [];
}
