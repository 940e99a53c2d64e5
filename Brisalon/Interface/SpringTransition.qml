import QtQuick

// The motion of a spring with a response of 0.38 s and a damping fraction of 0.86:
// so close to critically damped that its overshoot, half a percent, is not seen.
NumberAnimation {
    properties: "opacity,scale"
    duration: 380
    easing.type: Easing.BezierSpline
    easing.bezierCurve: [0.22, 0.35, 0.3, 1, 1, 1]
}
