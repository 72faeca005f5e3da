// The player: which clip, state and frame is shown, and the viewer's clock, menu and toolbar.
//
// data.clips[0] is the timeline. A clip shows frames 0 to clip.last, again and again. While a scene state is shown, it
// decides on the materials that it changes; a clip decides on all others that it changes.

function makePlayer(data) {
    var nodes = findNodes(data.nodes), matrix = null, materials = [], clips = [], restPoses = [];
    // Frame -1: everything is as the file has it.
    var clip = 0, frame = -1, time = 0, state = -1, playing = false, following = true;
    var pausedViewer = false, lastEvent = 0, failed = false;

    // --- opening

    function openPose(node) {
        var rest;
        if (nodes[node] && matrix && !restPoses[node]) {
            rest = new Matrix4x4();
            rest.set(nodes[node].transform);
            restPoses[node] = rest;
        }
    }

    function openClip(source) {
        var opened = { last: source.last, nodes: [], materials: [], camera: null }, i, track, given;
        for (i = 0; i < source.nodes.length; i += 1) {
            given = source.nodes[i];
            openPose(given.n);
            if (restPoses[given.n]) {
                track = openTrack(given, given.w);
                track.node = given.n;
                track.t = given.t;
                track.a = given.a;
                track.c = given.c;
                opened.nodes.push(track);
            }
        }
        for (i = 0; i < source.materials.length; i += 1) {
            track = openTrack(source.materials[i], 13);
            track.material = source.materials[i].m;
            opened.materials.push(track);
        }
        if (source.camera) {
            opened.camera = openTrack(source.camera, 10);
            opened.camera.t = source.camera.t;
        }
        return opened;
    }

    function open() {
        var i;
        for (i = 0; i < data.hidden.length; i += 1) {
            if (nodes[data.hidden[i]]) {
                hideAt(nodes[data.hidden[i]]);
            }
        }
        for (i = 0; i < data.uses.length; i += 1) {
            materials[i] = openMaterial(nodes, data.uses[i], data.looks[i]);
        }
        matrix = data.moves ? probeMatrix() : null;
        for (i = 0; i < data.clips.length; i += 1) {
            clips[i] = openClip(data.clips[i]);
        }
        clips[0] = clips[0] || { last: 0, nodes: [], materials: [], camera: null };
    }

    // --- showing

    function isHeldByState(material) {
        var looks = state < 0 ? [] : data.states[state].looks, i;
        for (i = 0; i < looks.length; i += 2) {
            if (looks[i] === material) {
                return true;
            }
        }
        return false;
    }

    function showPoses(tracks) {
        var changed = false, i, row;
        for (i = 0; i < tracks.length; i += 1) {
            row = sampleTrack(tracks[i], frame, tracks[i].width === 12 ? blendNumbers : blendPoses);
            if (row) {
                matrix.call(nodes[tracks[i].node].transform, matrix.order(poseOf(tracks[i], row)));
                changed = true;
            }
        }
        return changed;
    }

    function showMaterials(tracks) {
        var changed = false, i, look;
        for (i = 0; i < tracks.length; i += 1) {
            look = sampleTrack(tracks[i], frame, blendNumbers);
            if (look && !isHeldByState(tracks[i].material)) {
                changed = showLook(materials[tracks[i].material], look) || changed;
            }
        }
        return changed;
    }

    function showCamera(track) {
        var camera = scene.cameras.getByIndex(0), row = sampleTrack(track, Math.max(frame, 0), blendNumbers);
        if (camera && row) {
            placeCamera(camera, track, row);
        }
        return Boolean(camera && row);
    }

    function update(changed) {
        if (changed) {
            scene.update();
        }
    }

    function show(next) {
        var changed, shown = clips[clip];
        if (next === frame) {
            return;
        }
        frame = next;
        changed = showPoses(shown.nodes);
        changed = showMaterials(shown.materials) || changed;
        changed = (following && shown.camera ? showCamera(shown.camera) : false) || changed;
        update(changed);
    }

    // What is shown is not what the tracks remember.
    function forget(tracks) {
        var i;
        for (i = 0; i < tracks.length; i += 1) {
            tracks[i].shown = -1;
        }
    }

    function choose(wanted) {
        clip = wanted;
        frame = -1;
        time = 0;
        forget(clips[clip].nodes.concat(clips[clip].materials, clips[clip].camera || []));
    }

    function restMaterials() {
        var i, looks = state < 0 ? [] : data.states[state].looks, wanted = [];
        for (i = 0; i < looks.length; i += 2) {
            wanted[looks[i]] = data.looks[looks[i + 1]];
        }
        for (i = 0; i < materials.length; i += 1) {
            showLook(materials[i], wanted[i] || materials[i].rest);
        }
    }

    // Everything as the file has it, but for the scene state.
    function rest() {
        var tracks = clips[clip].nodes, i;
        for (i = 0; i < tracks.length; i += 1) {
            nodes[tracks[i].node].transform.set(restPoses[tracks[i].node]);
        }
        restMaterials();
    }

    // --- clock

    function setPlaying(wanted) {
        var call = wanted ? "play" : "pause";
        playing = wanted;
        pausedViewer = false;
        lastEvent = new Date().getTime();
        try {
            if (typeof runtime[call] === "function") {
                runtime[call]();
                pausedViewer = !wanted;
            }
        } catch (ignored) {
            // The player's own clock stands still or runs all the same.
        }
    }

    function advance(seconds) {
        // The first event, and one after a pause, may count all the time that was not shown.
        time += seconds > 0 ? Math.min(seconds, 1) : 0;
        time %= (clips[clip].last + 1) / data.fps;
        show(Math.min(Math.floor(time * data.fps + 0.001), clips[clip].last));
    }

    function onTime(event) {
        var now = new Date().getTime();
        // Events that come again after they had stopped: the viewer's own play button.
        if (pausedViewer && now - lastEvent > 300) {
            playing = true;
            pausedViewer = false;
        }
        lastEvent = now;
        if (playing && !failed) {
            try {
                advance(event.deltaTime);
            } catch (error) {
                failed = true;
                warn("playing has stopped: " + error);
            }
        }
    }

    // --- what page and menu ask for

    function redraw() {
        if (typeof runtime.refresh === "function") {
            runtime.refresh();
        }
    }

    function goTo(wanted) {
        var count = clips[clip].last + 1;
        wanted = Math.round(Number(wanted)) || 0;
        wanted = (wanted % count + count) % count;
        setPlaying(false);
        time = wanted / data.fps;
        show(wanted);
        redraw();
    }

    function stop() {
        setPlaying(false);
        rest();
        choose(0);
        if (following && clips[0].camera) {
            showCamera(clips[0].camera);
        }
        update(true);
        redraw();
    }

    // The position of a name in a list of objects with names; -1 for none, null for one that is not there.
    function positionOf(list, name) {
        var i;
        if (name === null || name === undefined || name === "") {
            return -1;
        }
        for (i = 0; i < list.length; i += 1) {
            if (list[i].name === name) {
                return i;
            }
        }
        warn("there is no '" + name + "'");
        return null;
    }

    function showState(name) {
        var position = positionOf(data.states, name);
        if (position === null) {
            return false;
        }
        state = position;
        restMaterials();
        if (frame >= 0) {
            forget(clips[clip].materials);
            showMaterials(clips[clip].materials);
        }
        update(true);
        redraw();
        return true;
    }

    function playSequence(name) {
        var position = positionOf(data.sequences, name);
        if (position === null) {
            return false;
        }
        rest();
        choose(position < 0 ? 0 : data.sequences[position].clip);
        show(0);
        setPlaying(true);
        return true;
    }

    function follow(wanted) {
        following = Boolean(wanted);
        if (following && clips[clip].camera) {
            clips[clip].camera.shown = -1;
            update(showCamera(clips[clip].camera));
        }
    }

    function namesIn(list) {
        var names = [], i;
        for (i = 0; i < list.length; i += 1) {
            names[i] = list[i].name;
        }
        return names;
    }

    open();
    return {
        play: function () { failed = false; setPlaying(true); },
        pause: function () { setPlaying(false); },
        // A viewer that was paused by its own button sends no events.
        isPlaying: function () { return playing && new Date().getTime() - lastEvent < 1000; },
        stop: stop,
        step: function (count) { goTo(Math.max(frame, 0) + (Number(count) || 1)); },
        goTo: goTo,
        showState: showState,
        playSequence: playSequence,
        follow: follow,
        states: function () { return namesIn(data.states); },
        sequences: function () { return namesIn(data.sequences); },
        onTime: onTime
    };
}
